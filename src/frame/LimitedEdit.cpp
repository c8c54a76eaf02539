#include "LimitedEdit.h"

#include <utility>

LimitedEdit::LimitedEdit(QWidget *parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::textEdited, this, &LimitedEdit::onTextEdited);
}

void LimitedEdit::setEntryLimit(int characters)
{
    m_entryLimit = characters;
    setMaxLength(characters);
}

void LimitedEdit::showStored(const QString &text)
{
    setMaxLength(static_cast<int>(qMax<qsizetype>(m_entryLimit, text.size())));
    setText(text);
    m_length = text.size();
    setCursorPosition(0);
}

// Setting the length moves the cursor and forgets what could be undone, so it is done only where
// the stored text was too long.
void LimitedEdit::onTextEdited(const QString &text)
{
    const qsizetype before = std::exchange(m_length, text.size());
    if (maxLength() == m_entryLimit)
        return;
    const bool isShorter = text.size() < before;
    const int position = cursorPosition();
    setMaxLength(isShorter ? static_cast<int>(qMax<qsizetype>(m_entryLimit, text.size()))
                           : m_entryLimit);
    setCursorPosition(position);
    m_length = this->text().size();
}

QSize LimitedEdit::sizeHint() const
{
    constexpr int hinted = 17; // characters in the hint of any line edit
    constexpr int least = 5;
    QSize size = QLineEdit::sizeHint();
    size.rwidth() += (qMax(m_entryLimit, least) - hinted) * fontMetrics().horizontalAdvance(u'x');
    return size;
}
