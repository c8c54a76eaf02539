#pragma once

#include <QEvent>
#include <QObject>
#include <QPoint>

#include <optional>

class Activation;
class ChildWindow;
class QAbstractButton;
class QKeyEvent;
class QKeySequence;
class QMdiArea;
class QShortcutEvent;

// An event filter of the application that keeps input and activations in order.
//
// Activations that are queued run before a key or a mouse press is handled, so that fast input has
// the same effect as slow input. If the active window refuses the activation to another window, the
// mouse press, its release and the wheel have no effect in the other window.
//
// An access key presses its button at once, and once however long it is held, unless the window
// lists the button in setAutoRepeatButtons(). A key that a button of the active window shares with
// the menu bar presses the button; Qt would alternate between the two and only move the focus.
class InputFilter final : public QObject
{
    Q_OBJECT

public:
    InputFilter(QMdiArea &area, Activation &activation);

    // The global position of the mouse press whose activations are running, if there is one. The
    // control under the mouse gets the press afterwards.
    std::optional<QPoint> pendingPress() const { return m_pendingPress; }

    // Returns whether the latest key press is the repetition of a key that is held.
    bool isAutoRepeat() const { return m_isAutoRepeat; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void notePress(const QKeyEvent &press);
    bool filterMouse(QEvent::Type type, const QPoint &globalPosition);
    bool filterShortcut(QObject *watched, const QShortcutEvent &event);
    QAbstractButton *findButton(const QKeySequence &accessKey) const;
    bool isAutoRepeatButton(QAbstractButton *button) const;
    bool isRefused(const QPoint &globalPosition) const;
    bool belongsToFrame(const QObject *watched) const;
    ChildWindow *childAt(const QPoint &globalPosition) const;

    QMdiArea &m_area;
    Activation &m_activation;
    std::optional<QPoint> m_pendingPress;
    bool m_isAutoRepeat = false;
    int m_releasedKey = 0; // the latest
    quint64 m_releaseTime = 0; // QInputEvent::timestamp(), 0 if the event has none
    bool m_discardsMouse = false; // from a discarded press to its release
};
