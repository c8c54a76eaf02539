#pragma once

#include "FailingInteraction.h"
#include "frame/Frame.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>

// Presses a button and processes the queued events.
inline void press(const QWidget &window, QLatin1StringView button)
{
    window.findChild<QPushButton *>(button)->click();
    QCoreApplication::processEvents();
}

// A main window with a frame, in which the program's windows are opened and closed as a user does.
// A message box makes the benchmark fail.
class BenchWindow
{
public:
    BenchWindow()
    {
        m_window.setCentralWidget(&m_area);
        m_window.resize(1000, 700);
        m_window.show();
    }
    ~BenchWindow()
    {
        frame.unloadAll();
        m_window.takeCentralWidget();
    }

    // Shows the window and processes the queued events, which activate and paint it.
    template <typename Window, typename... Args>
    Window &open(Args &&...args)
    {
        auto &window = frame.load<Window>(std::forward<Args>(args)...);
        frame.show(window);
        QCoreApplication::processEvents();
        return window;
    }

    void close(ChildWindow &window)
    {
        frame.hide(window);
        frame.unload(window);
        deleteClosed();
    }

    // Windows that close themselves are deleted by the event loop, which does not run here.
    static void deleteClosed()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

private:
    Q_DISABLE_COPY_MOVE(BenchWindow)

    FailingInteraction m_interaction;
    QMainWindow m_window;
    QMdiArea m_area;

public:
    Frame frame{m_interaction, m_area, [] {}};
};
