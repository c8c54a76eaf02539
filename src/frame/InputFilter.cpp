#include "frame/InputFilter.h"

#include "frame/Activation.h"
#include "frame/ChildWindow.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWindow>

#include <utility>

InputFilter::InputFilter(QMdiArea &area, Activation &activation)
    : m_area(area)
    , m_activation(activation)
{
    qApp->installEventFilter(this);
}

// Mouse events are seen on the frame's native window, before the focus moves, and again on the
// widgets, where nothing is left to do for them.
bool InputFilter::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: // comes before the key is a shortcut's or a control's
        m_activation.processPending();
        return false;
    case QEvent::WindowUnblocked: // the last modal window is closed
        if (watched == m_area.window())
            m_activation.schedule();
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return belongsToFrame(watched)
            && filterMouse(event->type(),
                           static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
    case QEvent::Wheel:
        return belongsToFrame(watched)
            && isRefused(static_cast<QWheelEvent *>(event)->globalPosition().toPoint());
    default:
        return false;
    }
}

bool InputFilter::filterMouse(QEvent::Type type, const QPoint &globalPosition)
{
    if (type == QEvent::MouseButtonRelease)
        return std::exchange(m_swallowing, false);
    if (type == QEvent::MouseMove || m_swallowing)
        return m_swallowing;

    // Where the focus has moved before the press is seen, the window is wanted already.
    ChildWindow *child = childAt(globalPosition);
    if (child && child != m_activation.active()) {
        m_activation.processPending();
        m_activation.requestActivation(*child);
    }
    m_activation.processPending();
    m_swallowing = child && child != m_activation.active();
    return m_swallowing;
}

bool InputFilter::isRefused(const QPoint &globalPosition) const
{
    const ChildWindow *child = childAt(globalPosition);
    return child && m_activation.isRefusedTo(*child);
}

bool InputFilter::belongsToFrame(const QObject *watched) const
{
    if (QApplication::activePopupWidget())
        return false; // the press closes the popup and comes again
    const QWidget *frame = m_area.window();
    if (watched->isWidgetType())
        return static_cast<const QWidget *>(watched)->window() == frame;
    return watched == frame->windowHandle();
}

ChildWindow *InputFilter::childAt(const QPoint &globalPosition) const
{
    const QWidget *frame = m_area.window();
    QWidget *widget = frame->childAt(frame->mapFromGlobal(globalPosition));
    while (widget) {
        if (auto *subWindow = qobject_cast<QMdiSubWindow *>(widget);
            subWindow && subWindow->mdiArea() == &m_area)
            return qobject_cast<ChildWindow *>(subWindow->widget());
        widget = widget->parentWidget();
    }
    return nullptr;
}
