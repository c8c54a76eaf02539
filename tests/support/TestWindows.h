#pragma once

#include "frame/Frame.h"
#include "support/MockInteraction.h"

#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>

// What happened, in order: "A+" activated, "A>B" deactivated while B is the active one, "A!" a
// press of its button, "*" the beep.
inline QStringList eventLog;

// A window for tests of the frame, with a button, which Enter presses, and a list; Esc is its Done.
class TestWindow : public ChildWindow
{
    Q_OBJECT

public:
    explicit TestWindow(Frame &frame);

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
        eventLog += nameOf(this) + u'+' + (key ? QString::number(key) : QString());
    }
    void Form_Deactivate() override
    {
        pass("Form_Deactivate");
        eventLog += nameOf(this) + u'>' + nameOf(frame().activeChild());
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
        eventLog += nameOf(this) + u'!';
    }
    void leave() { closeWindow(); }
};

class List : public TestWindow
{
    Q_OBJECT
    using TestWindow::TestWindow;
};

class Record : public TestWindow
{
    Q_OBJECT
    using TestWindow::TestWindow;
};

class Editor : public TestWindow
{
    Q_OBJECT
    using TestWindow::TestWindow;
    bool keepsActivationFrom(const ChildWindow &next) const noexcept override
    {
        return !next.inherits("Plants");
    }
};

class Plants : public TestWindow
{
    Q_OBJECT
    using TestWindow::TestWindow;
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

    MockInteraction interaction;
    QMdiArea area;
    Frame frame{interaction, area, [] { eventLog += QStringLiteral("*"); }};
    QLabel resting{QStringLiteral("here")};
    QLabel otherResting{QStringLiteral("there")};

private:
    using QMainWindow::show;
    void show(ChildWindow &window);
};
