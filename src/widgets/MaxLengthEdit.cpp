#include "widgets/MaxLengthEdit.h"

#include <utility>

MaxLengthEdit::MaxLengthEdit(QWidget *parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::textEdited, this, &MaxLengthEdit::onTextEdited);
}

void MaxLengthEdit::setMaxTypedLength(int characters)
{
    m_maxTypedLength = characters;
    setMaxLength(characters);
}

void MaxLengthEdit::showStored(const QString &text)
{
    setMaxLength(static_cast<int>(qMax<qsizetype>(m_maxTypedLength, text.size())));
    setText(text);
    m_length = text.size();
    setCursorPosition(0);
}

// Setting the length moves the cursor and forgets what could be undone, so it is done only where
// the stored text was too long.
void MaxLengthEdit::onTextEdited(const QString &text)
{
    const qsizetype before = std::exchange(m_length, text.size());
    if (maxLength() == m_maxTypedLength)
        return;
    const bool isShorter = text.size() < before;
    const int position = cursorPosition();
    setMaxLength(isShorter ? static_cast<int>(qMax<qsizetype>(m_maxTypedLength, text.size()))
                           : m_maxTypedLength);
    setCursorPosition(position);
    m_length = this->text().size();
}

QSize MaxLengthEdit::sizeHint() const
{
    constexpr int hinted = 17; // characters in the hint of any line edit
    constexpr int least = 5;
    QSize size = QLineEdit::sizeHint();
    size.rwidth() +=
        (qMax(m_maxTypedLength, least) - hinted) * fontMetrics().horizontalAdvance(u'x');
    return size;
}
