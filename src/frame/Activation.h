#pragma once

#include <QByteArrayView>
#include <QList>
#include <QObject>

#include <functional>

class ErrorBoundary;
class ChildWindow;
class QMdiArea;
class QMdiSubWindow;

// Decides which child window is active. QMdiArea reports which window the user activates and shows
// what is decided here. Form_Activate and Form_Deactivate run only in processPending(), which is
// queued, so that the handler that caused them has returned. The exception is the deactivation of
// a window that is about to be hidden.
class Activation final : public QObject
{
    Q_OBJECT

public:
    Activation(QMdiArea &area, const ErrorBoundary &boundary, std::function<void()> beep);

    // The window that is active or is to become active, or null. It changes before the previous
    // window's Form_Deactivate runs.
    ChildWindow *requested() const { return m_requested; }
    // Returns whether the child's Form_Activate has run and no other handler is due or held up by a
    // modal window.
    bool isActive(const ChildWindow &child) const;
    // Returns whether the requested window would take the activation back from next.
    bool isRefusedTo(const ChildWindow &next) const;

    // The child must be visible or about to be shown.
    void requestActivation(ChildWindow &child);
    // Call before the child is hidden. Runs its Form_Deactivate if it was active; it cannot take
    // the activation back. The next window in the history is requested.
    void prepareToHide(ChildWindow &child);
    // Call before all windows are destroyed. Runs no handler.
    void reset();

    // Calls processPending() after the running handler has returned.
    void schedule();
    // Runs the handlers that are due. Does nothing while a modal window is open; InputFilter calls
    // schedule() when the last one is closed.
    void processPending();

private:
    void onSubWindowActivated(QMdiSubWindow *subWindow);
    void switchToRequested();
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
    ChildWindow *m_active = nullptr; // its Form_Activate ran and its Form_Deactivate did not yet
    // Every shown window is in one of these lists, the latest first.
    QList<ChildWindow *> m_history; // by the latest Form_Activate
    QList<ChildWindow *> m_neverActivated; // by the latest request
    bool m_scheduled = false;
    bool m_processing = false;
};
