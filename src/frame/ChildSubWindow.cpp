#include "frame/ChildSubWindow.h"

#include "frame/Cascade.h"
#include "frame/ChildWindow.h"

#include <QHelpEvent>
#include <QStyle>
#include <QStyleOptionTitleBar>
#include <QToolTip>

using namespace Qt::Literals::StringLiterals;

ChildSubWindow::ChildSubWindow(ChildWindow &child)
    : m_child(child)
{
    setWidget(&child);
}

void ChildSubWindow::cascade(int number)
{
    const int step = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this);
    setGeometry(cascaded(number, sizeHint(), parentWidget()->size(), step));
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
        if (isCaptionAt(help.pos())) {
            QToolTip::showText(help.globalPos(),
                               u"<qt>%1</qt>"_s.arg(m_child.title().toHtmlEscaped()), this);
            return true;
        }
    } else if (event->type() == QEvent::WindowStateChange) {
        const auto before = static_cast<QWindowStateChangeEvent *>(event)->oldState();
        // The geometry to which it is restored may be from a time when the area was larger.
        if (before & (Qt::WindowMinimized | Qt::WindowMaximized))
            QMetaObject::invokeMethod(this, &ChildSubWindow::keepInside, Qt::QueuedConnection);
    }
    return QMdiSubWindow::event(event);
}

bool ChildSubWindow::isCaptionAt(QPoint position) const
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
