#include "widgets/ComboBox.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFrame>
#include <QStylePainter>
#include <QWheelEvent>

void ComboBox::setReadOnly(bool readOnly)
{
    m_isReadOnly = readOnly;
    update();
}

void ComboBox::showPopup()
{
    if (!m_isReadOnly)
        QComboBox::showPopup();
}

// An ignored key goes to the window, which handles Enter and Esc.
void ComboBox::keyPressEvent(QKeyEvent *event)
{
    if (m_isReadOnly)
        event->ignore();
    else
        QComboBox::keyPressEvent(event);
}

void ComboBox::mousePressEvent(QMouseEvent *event)
{
    if (m_isReadOnly)
        event->ignore();
    else
        QComboBox::mousePressEvent(event);
}

void ComboBox::wheelEvent(QWheelEvent *event)
{
    if (m_isReadOnly)
        event->ignore();
    else
        QComboBox::wheelEvent(event);
}

// When read-only, it looks like the read-only edits beside it.
void ComboBox::paintEvent(QPaintEvent *event)
{
    if (!m_isReadOnly) {
        QComboBox::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionFrame panel;
    panel.initFrom(this);
    panel.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &panel, this);
    panel.state |= QStyle::State_Sunken | QStyle::State_ReadOnly;
    panel.palette.setBrush(QPalette::Base, palette().window());
    painter.drawPrimitive(QStyle::PE_PanelLineEdit, panel);
    const QRect inside =
        style()->subElementRect(QStyle::SE_LineEditContents, &panel, this).adjusted(2, 0, -2, 0);
    const QString text = fontMetrics().elidedText(currentText(), Qt::ElideRight, inside.width());
    painter.drawItemText(inside, Qt::AlignLeft | Qt::AlignVCenter, palette(), true, text,
                         QPalette::Text);
}
