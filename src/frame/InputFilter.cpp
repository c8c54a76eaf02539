#include "frame/InputFilter.h"

#include "frame/Activation.h"
#include "frame/ChildWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QShortcutEvent>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <utility>

InputFilter::InputFilter(QMdiArea &area, Activation &activation)
    : m_area(area)
    , m_activation(activation)
{
    qApp->installEventFilter(this);
}

// Mouse events arrive at the main window's QWindow, before the focus moves, and then again at the
// widget, when nothing is pending any more.
bool InputFilter::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: // comes before a shortcut or a control handles the key
        notePress(static_cast<const QKeyEvent &>(*event));
        m_activation.processPending();
        return false;
    case QEvent::KeyPress:
        notePress(static_cast<const QKeyEvent &>(*event));
        return false;
    case QEvent::KeyRelease:
        m_releasedKey = static_cast<const QKeyEvent *>(event)->key();
        m_releaseTime = static_cast<const QKeyEvent *>(event)->timestamp();
        return false;
    case QEvent::WindowUnblocked: // the last modal window is closed
        if (watched == m_area.window())
            m_activation.schedule();
        return false;
    case QEvent::Shortcut:
        return filterShortcut(watched, static_cast<const QShortcutEvent &>(*event));
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

// X repeats a key by a release and a press at the same time. QKeyEvent::isAutoRepeat() is false if
// the release is handled before the press has arrived.
void InputFilter::notePress(const QKeyEvent &press)
{
    m_isAutoRepeat = press.isAutoRepeat()
        || (press.key() == m_releasedKey && press.timestamp() == m_releaseTime
            && m_releaseTime != 0);
}

bool InputFilter::filterMouse(QEvent::Type type, const QPoint &globalPosition)
{
    if (type == QEvent::MouseButtonRelease)
        return std::exchange(m_discardsMouse, false);
    if (type == QEvent::MouseMove || m_discardsMouse)
        return m_discardsMouse;

    const QScopedValueRollback pendingPress(m_pendingPress, std::optional(globalPosition));
    // If the press moved the focus before it arrives here, the child is requested already.
    ChildWindow *child = childAt(globalPosition);
    if (child && child != m_activation.requested()) {
        m_activation.processPending();
        m_activation.requestActivation(*child);
    }
    m_activation.processPending();
    m_discardsMouse = child && child != m_activation.requested();
    return m_discardsMouse;
}

// QAbstractButton would press itself 100 ms later, after keys that the user types in between, and
// again whenever a held key repeats.
bool InputFilter::filterShortcut(QObject *watched, const QShortcutEvent &event)
{
    auto *button =
        event.isAmbiguous() ? findButton(event.key()) : qobject_cast<QAbstractButton *>(watched);
    if (!button)
        return false;
    if (!m_isAutoRepeat || isAutoRepeatButton(button)) {
        if (button->isCheckable())
            button->setFocus(Qt::ShortcutFocusReason);
        button->click();
    }
    return true;
}

QAbstractButton *InputFilter::findButton(const QKeySequence &accessKey) const
{
    const ChildWindow *child = m_activation.requested();
    if (!child || QApplication::activeModalWidget())
        return nullptr;
    const auto buttons = child->findChildren<QAbstractButton *>();
    const auto hasKey = [&](const QAbstractButton *button) {
        return button->isVisible() && button->isEnabled()
            && QKeySequence::mnemonic(button->text()) == accessKey;
    };
    const auto found = std::find_if(buttons.begin(), buttons.end(), hasKey);
    return found == buttons.end() ? nullptr : *found;
}

bool InputFilter::isAutoRepeatButton(QAbstractButton *button) const
{
    const ChildWindow *child = m_activation.requested();
    return child && child->m_autoRepeatButtons.contains(button);
}

bool InputFilter::isRefused(const QPoint &globalPosition) const
{
    const ChildWindow *child = childAt(globalPosition);
    return child && m_activation.isRefusedTo(*child);
}

bool InputFilter::belongsToFrame(const QObject *watched) const
{
    if (QApplication::activePopupWidget())
        return false; // the press closes the popup and is then sent again
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
