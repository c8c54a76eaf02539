#include "support/MockInteraction.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Without a line the failure is reported for the whole test function.
void fail(const QString &message, const std::optional<SourceLine> &line = {})
{
    if (QTest::currentTestFunction())
        QTest::qFail(qUtf8Printable(message), line ? line->file : nullptr, line ? line->line : 0);
    else
        qFatal("%s", qUtf8Printable(message));
}

class MockProgress final : public Progress
{
public:
    explicit MockProgress(std::optional<qsizetype> cancelledIndex)
        : m_cancelledIndex(cancelledIndex)
    {
    }

    bool update(qsizetype done, qsizetype total, const QString &label) override
    {
        if (done != m_done || done >= total || isCancelled())
            fail(u"progress out of turn: %1 of %2, \"%3\""_s.arg(done).arg(total).arg(label));
        if (isCancelled())
            return false;
        ++m_done;
        return !isCancelled();
    }

private:
    bool isCancelled() const { return m_cancelledIndex && m_done > *m_cancelledIndex; }

    std::optional<qsizetype> m_cancelledIndex;
    qsizetype m_done = 0;
};

} // namespace

MockInteraction::~MockInteraction()
{
    checkAllCame();
}

void MockInteraction::checkAllCame()
{
    for (const auto &[box, answer, line] : std::exchange(m_expected, {}))
        fail(u"did not come: "_s + box, line);
    if (const auto cancellation = std::exchange(m_cancellation, {}))
        fail(u"no progress to cancel"_s, cancellation->line);
}

void MockInteraction::expectProgressAndCancel(qsizetype index, SourceLine line)
{
    m_cancellation = {index, line};
}

std::unique_ptr<Progress> MockInteraction::startProgress(const QString & /*title*/)
{
    const auto cancellation = std::exchange(m_cancellation, {});
    return std::make_unique<MockProgress>(cancellation ? std::optional(cancellation->index)
                                                       : std::nullopt);
}

Button MockInteraction::show(const MessageBox &box)
{
    const Answer answer = answerTo(describe(box), box.defaultButton);
    const auto *checked = std::get_if<Checked>(&answer);
    if (!box.checkBox.isEmpty())
        *box.isChecked = checked != nullptr;
    return checked ? checked->button : std::get<Button>(answer);
}

QString MockInteraction::describe(const MessageBox &box)
{
    static constexpr const char *icons[] = {"no icon", "information", "question", "exclamation"};
    static constexpr const char *captions[] = {"Ok", "Yes", "No", "Stop", "Open", "Close"};
    QStringList buttons;
    for (const Button button : box.buttons) {
        const auto *caption = captions[static_cast<int>(button)];
        buttons += QLatin1StringView(caption) + (button == box.defaultButton ? u"*"_s : QString());
    }
    if (!box.checkBox.isEmpty())
        buttons += u"[ ] "_s + box.checkBox;
    if (!box.details.isEmpty())
        buttons += u"details \"%1\""_s.arg(box.details);
    return u"message box \"%1\", \"%2\", %3, %4"_s.arg(
        box.title, box.text, QLatin1StringView(icons[static_cast<int>(box.icon)]),
        buttons.join(u' '));
}

QString MockInteraction::describe(const InputBox &box)
{
    return u"input box of %1 \"%2\", \"%3\", default \"%4\""_s.arg(
        box.lines == Lines::One ? u"one line"_s : u"several lines"_s, box.title, box.prompt,
        box.defaultText);
}

QString MockInteraction::describe(const FileChooser &chooser)
{
    return u"file chooser \"%1\" for %2 (%3), else .%4, in \"%5\""_s.arg(
        chooser.title, chooser.description, chooser.patterns.join(u' '), chooser.defaultSuffix,
        chooser.directory);
}

QString MockInteraction::describe(const FolderChooser &chooser)
{
    return u"folder chooser \"%1\" in \"%2\""_s.arg(chooser.title, chooser.directory);
}

MockInteraction::Answer MockInteraction::answerTo(const QString &box, const Answer &otherwise)
{
    if (m_expected.isEmpty()) {
        fail(u"unexpected: "_s + box);
        return otherwise;
    }
    const auto [expected, answer, line] = m_expected.takeFirst();
    if (expected == box)
        return answer;
    fail(u"came: %1\nexpected: %2"_s.arg(box, expected), line);
    return otherwise;
}
