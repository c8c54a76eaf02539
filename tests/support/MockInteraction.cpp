#include "support/MockInteraction.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

void fail(const QString &message)
{
    if (QTest::currentTestFunction())
        QTest::qFail(qUtf8Printable(message), __FILE__, __LINE__);
    else
        qFatal("%s", qUtf8Printable(message));
}

} // namespace

MockInteraction::~MockInteraction()
{
    checkAllCame();
}

void MockInteraction::checkAllCame()
{
    for (const auto &[box, answer] : std::exchange(m_expected, {}))
        fail(u"did not come: "_s + box);
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

MockInteraction::Answer MockInteraction::meet(const QString &box, const Answer &otherwise)
{
    const auto [expected, answer] =
        m_expected.isEmpty() ? std::pair(u"no box"_s, otherwise) : m_expected.takeFirst();
    if (expected == box)
        return answer;
    fail(u"came: %1\nexpected: %2"_s.arg(box, expected));
    return otherwise;
}
