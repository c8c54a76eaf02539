#include "widgets/ComboBox.h"

#include "widgets/StandardWidgets.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QWheelEvent>

namespace {

// Returns the text of the label whose buddy the control is.
QString labelOf(QWidget *control)
{
    const auto labels =
        QAccessible::queryAccessibleInterface(control)->relations(QAccessible::Label);
    return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name);
}

} // namespace

ComboBox::ComboBox(QWidget *parent)
    : QComboBox(parent)
    , m_readOnlyEdit(new QLineEdit(this))
{
    setFocusPolicy(Qt::StrongFocus); // the default policy lets the wheel move the focus
    m_readOnlyEdit->hide();
    m_readOnlyEdit->setReadOnly(true);
    showReadOnlyColors(*m_readOnlyEdit, true);
    connect(this, &QComboBox::currentIndexChanged, this, &ComboBox::showText);
    connect(this, &QComboBox::currentTextChanged, this, &ComboBox::showText);
}

// The edit has the focus while it is visible, and is next to the combo box in the tab order.
void ComboBox::setReadOnly(bool readOnly)
{
    if (readOnly == isReadOnly())
        return;
    if (readOnly) {
        m_readOnlyEdit->setAccessibleName(labelOf(this)); // the label names only its buddy
        setTabOrder(this, m_readOnlyEdit);
        m_readOnlyEdit->show();
        setFocusProxy(m_readOnlyEdit);
    } else {
        const bool hadFocus = hasFocus();
        setFocusProxy(nullptr);
        if (hadFocus)
            setFocus();
        m_readOnlyEdit->hide();
    }
}

void ComboBox::showText()
{
    m_readOnlyEdit->setText(currentText());
    m_readOnlyEdit->setCursorPosition(0);
}

void ComboBox::showPopup()
{
    if (!isReadOnly())
        QComboBox::showPopup();
}

// What the read-only edit ignores arrives here. An ignored key goes on to the window, which handles
// Enter and Esc.
void ComboBox::keyPressEvent(QKeyEvent *event)
{
    if (isReadOnly())
        event->ignore();
    else
        QComboBox::keyPressEvent(event);
}

void ComboBox::mousePressEvent(QMouseEvent *event)
{
    if (isReadOnly())
        event->ignore();
    else
        QComboBox::mousePressEvent(event);
}

void ComboBox::wheelEvent(QWheelEvent *event)
{
    if (isReadOnly() || !hasFocus())
        event->ignore();
    else
        QComboBox::wheelEvent(event);
}

void ComboBox::resizeEvent(QResizeEvent *event)
{
    QComboBox::resizeEvent(event);
    m_readOnlyEdit->setGeometry(rect());
}

void ComboBox::changeEvent(QEvent *event)
{
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showReadOnlyColors(*m_readOnlyEdit, true);
}
