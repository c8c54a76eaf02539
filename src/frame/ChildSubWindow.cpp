#include "frame/ChildSubWindow.h"

#include "frame/ChildWindow.h"

#include <QAction>
#include <QHelpEvent>
#include <QMdiArea>
#include <QMenu>
#include <QStyle>
#include <QStyleOptionTitleBar>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QRect cascaded(int number, QSize size, QSize area, int step)
{
    const QSize fitting = size.boundedTo(area);
    const QSize room = area - fitting;
    const int places = std::min(room.width(), room.height()) / step + 1;
    const int offset = number % places * step;
    return {QPoint(offset, offset), fitting};
}

QRect constrainedTo(QRect rect, QSize area)
{
    const QSize fitting = rect.size().boundedTo(area);
    const QSize room = area - fitting;
    return {QPoint(std::clamp(rect.x(), 0, room.width()), std::clamp(rect.y(), 0, room.height())),
            fitting};
}

} // namespace

ChildSubWindow::ChildSubWindow(ChildWindow &child)
    : m_child(child)
{
    setWidget(&child);
    // QMdiSubWindow remembers that it got the focus by Tab, and then gives the focus to the next
    // control each time it is activated. Without this it would get it between the last control and
    // the first, and when Qt moves the focus out of a widget that is hidden.
    setFocusPolicy(Qt::ClickFocus);
    // The shortcut of Close would close the window as its close box does, without a question.
    const auto actions = systemMenu()->actions();
    for (QAction *action : actions)
        action->setShortcut({});
    // QMdiArea connects to the signal later, so that this runs before it hides any window.
    connect(this, &QMdiSubWindow::aboutToActivate, this, &ChildSubWindow::takeFocusFromOthers);
}

void ChildSubWindow::cascade(int number)
{
    const int step = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this);
    setGeometry(cascaded(number, sizeHint(), parentWidget()->size(), step));
}

void ChildSubWindow::reopenAt(const QRect &geometry)
{
    setGeometry(constrainedTo(geometry, parentWidget()->size()));
}

QRect ChildSubWindow::restoredGeometry() const
{
    return isMinimized() || isMaximized() ? m_restoredGeometry : geometry();
}

void ChildSubWindow::keepInside()
{
    if (!isMinimized() && !isMaximized())
        setGeometry(constrainedTo(geometry(), parentWidget()->size()));
}

bool ChildSubWindow::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto &help = static_cast<const QHelpEvent &>(*event);
        if (isTitleAt(help.pos())) {
            QToolTip::showText(help.globalPos(),
                               u"<qt>%1</qt>"_s.arg(m_child.title().toHtmlEscaped()), this);
            return true;
        }
    }
    if (event->type() == QEvent::WindowStateChange)
        return changeState(static_cast<QWindowStateChangeEvent &>(*event));
    return QMdiSubWindow::event(event);
}

bool ChildSubWindow::changeState(QWindowStateChangeEvent &event)
{
    if (event.isOverride()) // only corrects the state, within another change
        return QMdiSubWindow::event(&event);
    const Qt::WindowStates before = event.oldState();
    if (!(before & (Qt::WindowMinimized | Qt::WindowMaximized)))
        m_restoredGeometry = geometry();
    if (!(before & Qt::WindowMinimized))
        m_focus = m_child.focusWidget();

    const bool handled = QMdiSubWindow::event(&event);

    // QMdiSubWindow hides the control in between, which moves the focus to the next one.
    if (!isMinimized() && m_focus && mdiArea()->activeSubWindow() == this)
        m_focus->setFocus();
    // It is restored to the geometry that it had when the area may have been larger.
    if (before & (Qt::WindowMinimized | Qt::WindowMaximized))
        QMetaObject::invokeMethod(this, &ChildSubWindow::keepInside, Qt::QueuedConnection);
    return handled;
}

// QMdiSubWindow clears the focus of a window that is deactivated, and may give it back to a control
// that had it long before. The focus waits in the area instead, so that the window keeps its
// focusWidget() and has it again when it is activated.
void ChildSubWindow::takeFocusFromOthers()
{
    const QWidget *focus = window()->focusWidget();
    if (focus && mdiArea()->isAncestorOf(focus) && !isAncestorOf(focus))
        mdiArea()->setFocus();
}

bool ChildSubWindow::isTitleAt(QPoint position) const
{
    QStyleOptionTitleBar option;
    option.initFrom(this);
    option.subControls = QStyle::SC_All;
    option.titleBarFlags = windowFlags();
    option.titleBarState = static_cast<int>(windowState());
    option.rect.setHeight(style()->pixelMetric(QStyle::PM_TitleBarHeight, &option, this));
    return style()->hitTestComplexControl(QStyle::CC_TitleBar, &option, position, this)
        == QStyle::SC_TitleBarLabel;
}
