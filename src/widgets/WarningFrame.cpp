#include "widgets/WarningFrame.h"

#include <QEvent>
#include <QLineEdit>
#include <QPainter>

WarningFrame::WarningFrame(QLineEdit &edit)
    : QWidget(&edit)
    , m_edit(edit)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    edit.installEventFilter(this);
    connect(&edit, &QLineEdit::textChanged, this, [this] { showReason({}); });
}

void WarningFrame::showReason(const QString &reason)
{
    if (isHidden())
        m_description = m_edit.accessibleDescription();
    m_edit.setToolTip(reason);
    m_edit.setAccessibleDescription(reason.isEmpty() ? m_description : reason);
    setGeometry(m_edit.rect());
    setVisible(!reason.isEmpty());
}

bool WarningFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(m_edit.rect());
    return QWidget::eventFilter(watched, event);
}

void WarningFrame::paintEvent(QPaintEvent * /*event*/)
{
    constexpr QColor warning(0xd9, 0x3a, 0x2b); // visible on light and on dark backgrounds
    constexpr int width = 2;
    QPainter painter(this);
    painter.setPen(QPen(warning, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(rect().adjusted(width / 2, width / 2, -width / 2, -width / 2));
}
