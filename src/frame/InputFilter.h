#pragma once

#include <QEvent>
#include <QObject>
#include <QPoint>

class Activation;
class ChildWindow;
class QMdiArea;

// Keeps the user's keys and mouse behind the activations that are due: what is queued runs before a
// key or a press is handled, so that fast hands get what slow hands get. A press in a window that
// the active one does not let in is swallowed with its release, a turn of the wheel too.
class InputFilter final : public QObject
{
    Q_OBJECT

public:
    InputFilter(QMdiArea &area, Activation &activation); // watches the application while it lives

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool filterMouse(QEvent::Type type, const QPoint &globalPosition);
    bool isRefused(const QPoint &globalPosition) const;
    bool belongsToFrame(const QObject *watched) const;
    ChildWindow *childAt(const QPoint &globalPosition) const;

    QMdiArea &m_area;
    Activation &m_activation;
    bool m_swallowing = false; // between a swallowed press and its release
};
