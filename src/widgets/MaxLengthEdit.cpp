#include "widgets/MaxLengthEdit.h"

#include <utility>

MaxLengthEdit::MaxLengthEdit(QWidget *parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::textEdited, this, &MaxLengthEdit::onTextEdited);
}

void MaxLengthEdit::setMaxInputLength(int characters)
{
    m_maxInputLength = characters;
    setMaxLength(characters);
}

void MaxLengthEdit::showStored(const QString &text)
{
    setMaxLength(static_cast<int>(qMax<qsizetype>(m_maxInputLength, text.size())));
    setText(text);
    m_length = text.size();
    setCursorPosition(0);
}

// QLineEdit::setMaxLength() moves the cursor and clears the undo history, so it is called only if
// the stored text was too long.
void MaxLengthEdit::onTextEdited(const QString &text)
{
    const qsizetype before = std::exchange(m_length, text.size());
    if (maxLength() == m_maxInputLength)
        return;
    const bool isShorter = text.size() < before;
    const int position = cursorPosition();
    setMaxLength(isShorter ? static_cast<int>(qMax<qsizetype>(m_maxInputLength, text.size()))
                           : m_maxInputLength);
    setCursorPosition(position);
    m_length = this->text().size();
}

QSize MaxLengthEdit::sizeHint() const
{
    constexpr int hinted = 17; // characters in QLineEdit::sizeHint()
    constexpr int minimum = 5;
    QSize size = QLineEdit::sizeHint();
    size.rwidth() +=
        (qMax(m_maxInputLength, minimum) - hinted) * fontMetrics().horizontalAdvance(u'x');
    return size;
}
