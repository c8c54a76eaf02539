#pragma once

#include <QByteArrayView>
#include <QList>
#include <QObject>

#include <functional>

class ErrorBoundary;
class ChildWindow;
class QMdiArea;
class QMdiSubWindow;

// The truth about which child window is active. The area reports what its user does and shows what
// is decided here. Form_Activate and Form_Deactivate run in settle() alone, which is queued, so
// that the handler that caused them has ended; except the deactivation of a window that leaves.
class Activation final : public QObject
{
    Q_OBJECT

public:
    Activation(QMdiArea &area, const ErrorBoundary &boundary, std::function<void()> beep);

    // The window that should be active, also during the deactivation of the one before; or null.
    ChildWindow *active() const { return m_requested; }
    // Whether the active window takes the activation back from next.
    bool isRefusedTo(const ChildWindow &next) const;

    void requestActivation(ChildWindow &child); // of a window that is shown, or is about to be
    void
    remove(ChildWindow &child); // before it is hidden; it cannot take the activation back any more
    void clear(); // no window is on the stage any more; no handler runs

    void schedule(); // settle() for when the running handler has ended
    // Runs the handlers that are due. Does nothing while a modal window is open, and goes on when
    // the input gate queues it again.
    void processPending();

private:
    void onSubWindowActivated(QMdiSubWindow *subWindow);
    void moveOn();
    void restore(ChildWindow &child);
    void runActivate(ChildWindow &child);
    void runDeactivate(ChildWindow &child);
    bool isShown(ChildWindow *child) const;
    ChildWindow *findShown(QByteArrayView className) const;
    ChildWindow *nextInHistory() const;
    void bringToFront(ChildWindow *child);

    QMdiArea &m_area;
    const ErrorBoundary &m_boundary;
    std::function<void()> m_beep;

    ChildWindow *m_requested = nullptr;
    ChildWindow *m_active = nullptr; // its activation ran, its deactivation did not yet
    // Every shown window is in one of the two, the latest first.
    QList<ChildWindow *> m_history; // had an activation
    QList<ChildWindow *> m_neverActivated; // never got one so far
    bool m_scheduled = false;
    bool m_processing = false;
};
