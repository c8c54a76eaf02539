#pragma once

#include "Frame.h"
#include "StrictDoorway.h"

#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>

// What happened, in order: "A+" activated, "A>B" deactivated while B is the active one, "A!" a
// press of its button, "*" the beep.
inline QStringList happened;

// A window for tests of the frame, with a button, which Enter presses, and a list; Esc is its Done.
class Stand : public ChildWindow
{
    Q_OBJECT

public:
    explicit Stand(Frame &frame);

    static QString nameOf(const ChildWindow *child)
    {
        return child ? QString::fromLatin1(child->metaObject()->className()) : QString();
    }

    static inline QString failing; // the handler that throws

    QPushButton button{QStringLiteral("Press")};
    QPushButton done{QStringLiteral("Done")};
    QListWidget list;
    int key = 0;

protected:
    void Form_Load() override { pass("Form_Load"); }
    void openDataSources() override { pass("openDataSources"); }
    void Form_Activate() override
    {
        pass("Form_Activate");
        happened += nameOf(this) + u'+' + (key ? QString::number(key) : QString());
    }
    void Form_Deactivate() override
    {
        pass("Form_Deactivate");
        happened += nameOf(this) + u'>' + nameOf(frame().activeChild());
    }

private:
    static void pass(const char *handler)
    {
        if (failing == QLatin1StringView(handler))
            throw std::runtime_error("Table \xE2\x80\x9CRezepte\xE2\x80\x9D is gone");
    }
    void press()
    {
        pass("press");
        happened += nameOf(this) + u'!';
    }
    void leave()
    {
        frame().hide(*this);
        frame().unload(*this);
    }
};

class List : public Stand
{
    Q_OBJECT
    using Stand::Stand;
};

class Record : public Stand
{
    Q_OBJECT
    using Stand::Stand;
};

class Editor : public Stand
{
    Q_OBJECT
    using Stand::Stand;
    bool keepsActivationFrom(const ChildWindow &next) const noexcept override
    {
        return !next.inherits("Plants");
    }
};

class Plants : public Stand
{
    Q_OBJECT
    using Stand::Stand;
    bool keepsActivationFrom(const ChildWindow & /*next*/) const noexcept override { return true; }
    QByteArrayView compositionEditor() const override { return "Editor"; }
};

class Tools : public Plants
{
    Q_OBJECT
    using Plants::Plants;
};

// Opens them, by F5 to F9 too: side by side, so that the mouse can reach each.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(); // shown and active

    template <class Window>
    void open()
    {
        show(frame.load<Window>());
    }

    StrictDoorway doorway;
    QMdiArea area;
    Frame frame{doorway, area, [] { happened += QStringLiteral("*"); }};
    QLabel resting{QStringLiteral("here")};
    QLabel otherResting{QStringLiteral("there")};

private:
    using QMainWindow::show;
    void show(ChildWindow &window);
};
