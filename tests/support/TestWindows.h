#pragma once

#include "frame/Frame.h"
#include "support/MockInteraction.h"

#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>

// The events in their order: "A+" is Form_Activate of A, "A>B" is Form_Deactivate of A while B is
// the active child, "A!" is a press of the button of A, "A/" one of its Next, "*" is the beep.
inline QStringList eventLog;

// A window for tests of the frame with a default button, a list, a button whose access key repeats
// while it is held, and Done as the button that leaves it.
class TestWindow : public ChildWindow
{
    Q_OBJECT

public:
    explicit TestWindow(Frame &frame);

    static QString nameOf(const ChildWindow *child)
    {
        return child ? QString::fromLatin1(child->metaObject()->className()) : QString();
    }

    static inline QString failing; // the name of the handler that throws

    QPushButton button{QStringLiteral("&Press")};
    QPushButton next{QStringLiteral("Nex&t")};
    QPushButton done{QStringLiteral("D&one")};
    QListWidget list;
    int key = 0; // if not 0, it is logged by Form_Activate
    bool focusesList = false; // Form_Activate gives the focus to the list

protected:
    void Form_Load() override { run("Form_Load"); }
    void openDataSources() override { run("openDataSources"); }
    void Form_Activate() override
    {
        run("Form_Activate");
        if (focusesList)
            list.setFocus();
        eventLog += nameOf(this) + u'+' + (key ? QString::number(key) : QString());
    }
    void Form_Deactivate() override
    {
        run("Form_Deactivate");
        eventLog += nameOf(this) + u'>' + nameOf(frame().activeChild());
    }

private:
    static void run(const char *handler)
    {
        if (failing == QLatin1StringView(handler))
            throw std::runtime_error("Table \xE2\x80\x9CRezepte\xE2\x80\x9D is gone");
    }
    void press()
    {
        run("press");
        eventLog += nameOf(this) + u'!';
    }
    void step() { eventLog += nameOf(this) + u'/'; }
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

// Gives the activation only to Plants.
class Editor : public TestWindow
{
    Q_OBJECT
    using TestWindow::TestWindow;
    bool keepsActivationFrom(const ChildWindow &next) const noexcept override
    {
        return !next.inherits("Plants");
    }
};

// Gives the activation to no window.
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

// Opens the windows with F5 to F9, side by side, so that the mouse can reach all of them.
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
    QLabel leftLabel{QStringLiteral("left")}; // two places to which the mouse can move
    QLabel rightLabel{QStringLiteral("right")};

private:
    using QMainWindow::show;
    void show(ChildWindow &window);
};
