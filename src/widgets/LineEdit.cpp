#include "widgets/LineEdit.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>
#include <QValidator>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

QString toOneLine(QString text)
{
    static const QRegularExpression atEnds(u"^[\t\n\r\u2028\u2029]+|[\t\n\r\u2028\u2029]+$"_s);
    static const QRegularExpression inside(u"\r\n|[\t\n\r\u2028\u2029]"_s);
    return text.remove(atEnds).replace(inside, u" "_s);
}

// Returns as many whole characters of the text as fit into this length.
QString truncated(const QString &text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(length);
    if (!finder.isAtBoundary())
        finder.toPreviousBoundary();
    return text.first(finder.position());
}

} // namespace

// QLineEdit takes input back that its validator refuses, and keeps the undo history. It would clear
// the history if the validator corrected the input itself, and at each call of setMaxLength().
class LineEdit::Validator final : public QValidator
{
public:
    explicit Validator(LineEdit &edit)
        : QValidator(&edit)
        , m_edit(edit)
    {
    }

    State validate(QString &text, int &cursor) const override
    {
        return m_edit.isAccepted(text, cursor) ? Acceptable : Invalid;
    }

private:
    LineEdit &m_edit;
};

LineEdit::LineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setValidator(new Validator(*this));
}

void LineEdit::setMaxInputLength(int length)
{
    m_maxInputLength = length;
    m_maxTextLength = std::max<qsizetype>(length, text().size());
}

void LineEdit::showStored(const QString &text)
{
    m_maxTextLength = std::max<qsizetype>(m_maxInputLength, text.size());
    setText(text);
    setCursorPosition(0);
}

QSize LineEdit::sizeHint() const
{
    constexpr int hinted = 17; // characters in QLineEdit::sizeHint()
    constexpr int minimum = 5;
    QSize size = QLineEdit::sizeHint();
    if (m_maxInputLength != unlimited) {
        size.rwidth() +=
            (std::max(m_maxInputLength, minimum) - hinted) * fontMetrics().horizontalAdvance(u'x');
    }
    return size;
}

bool LineEdit::event(QEvent *event)
{
    const bool isHandled = QLineEdit::event(event);
    insertCorrected();
    return isHandled;
}

// QLineEdit also validates after setText(), which clears the history, and after undo(). Only input
// can be undone but not redone.
bool LineEdit::isAccepted(const QString &text, qsizetype cursor)
{
    if (isUndoAvailable() && !isRedoAvailable()) {
        Input input = lastInput(text, cursor);
        const qsizetype kept = m_text.size() - input.replaced;
        const QString corrected = truncated(toOneLine(input.text), m_maxTextLength - kept);
        if (corrected != input.text) {
            input.text = corrected;
            m_corrected = input;
            // Input from the context menu does not come through event().
            QMetaObject::invokeMethod(this, &LineEdit::insertCorrected, Qt::QueuedConnection);
            return false;
        }
    }
    m_text = text;
    return true;
}

// Compares the text with the one before the input, after which the cursor is.
LineEdit::Input LineEdit::lastInput(const QString &text, qsizetype cursor) const
{
    const auto [tail, oldTail] =
        std::mismatch(text.rbegin(), text.rend() - cursor, m_text.rbegin(), m_text.rend());
    const auto [head, oldHead] =
        std::mismatch(text.begin(), tail.base(), m_text.begin(), oldTail.base());
    const qsizetype position = head - text.begin();
    const qsizetype end = tail.base() - text.begin();
    const qsizetype oldEnd = oldTail.base() - m_text.begin();
    return {position, oldEnd - position, text.sliced(position, end - position)};
}

// Call after QLineEdit has taken the refused input back.
void LineEdit::insertCorrected()
{
    const std::optional<Input> input = std::exchange(m_corrected, {});
    if (!input || input->text.isEmpty())
        return;
    setSelection(static_cast<int>(input->position), static_cast<int>(input->replaced));
    insert(input->text);
}
