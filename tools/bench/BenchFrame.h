#pragma once

#include "NoInteraction.h"
#include "frame/Frame.h"

#include <QMainWindow>
#include <QMdiArea>

// A main window with a frame, in which the program's windows are opened and left as a cook does it.
// A box is a failure of the measurement.
class BenchFrame
{
public:
    BenchFrame()
    {
        m_window.setCentralWidget(&m_area);
        m_window.resize(1000, 700);
        m_window.show();
    }
    ~BenchFrame()
    {
        frame.unloadAll();
        m_window.takeCentralWidget();
    }

    // Shows the window and lets what is queued happen: its activation, and the painting.
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
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

private:
    Q_DISABLE_COPY_MOVE(BenchFrame)

    NoInteraction m_interaction;
    QMainWindow m_window;
    QMdiArea m_area;

public:
    Frame frame{m_interaction, m_area, [] {}};
};
