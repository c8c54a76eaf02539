#include "StrictDoorway.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QString describe(const MessageBox &box)
{
    static constexpr const char *icons[] = {"no icon", "information", "question", "exclamation"};
    static constexpr const char *captions[] = {"Ok", "Yes", "No"};
    QStringList buttons;
    for (const Button button : box.buttons) {
        const auto *caption = captions[static_cast<int>(button)];
        buttons += QLatin1StringView(caption) + (button == box.defaultButton ? u"*"_s : QString());
    }
    return u"message box \"%1\", \"%2\", %3, %4"_s.arg(
        box.title, box.text, QLatin1StringView(icons[static_cast<int>(box.icon)]),
        buttons.join(u' '));
}

QString describe(const InputBox &box)
{
    return u"input box of %1 \"%2\", \"%3\", default \"%4\""_s.arg(
        box.lines == Lines::One ? u"one line"_s : u"several lines"_s, box.title, box.prompt,
        box.defaultText);
}

QString describe(const FileChooser &chooser)
{
    return u"file chooser \"%1\" for %2 (%3) in \"%4\""_s.arg(
        chooser.title, chooser.description, chooser.patterns.join(u' '), chooser.directory);
}

QString describe(const FolderChooser &chooser)
{
    return u"folder chooser \"%1\" in \"%2\""_s.arg(chooser.title, chooser.directory);
}

void fail(const QString &message)
{
    if (QTest::currentTestFunction())
        QTest::qFail(qUtf8Printable(message), __FILE__, __LINE__);
    else
        qFatal("%s", qUtf8Printable(message));
}

} // namespace

StrictDoorway::~StrictDoorway()
{
    checkAllCame();
}

void StrictDoorway::expect(const MessageBox &box, Button answer)
{
    m_expected.append({describe(box), answer});
}

void StrictDoorway::expect(const InputBox &box, const QString &answer)
{
    m_expected.append({describe(box), answer});
}

void StrictDoorway::expect(const FileChooser &chooser, const QString &path)
{
    m_expected.append({describe(chooser), path});
}

void StrictDoorway::expect(const FolderChooser &chooser, const QString &path)
{
    m_expected.append({describe(chooser), path});
}

void StrictDoorway::checkAllCame()
{
    for (const Expected &expected : std::exchange(m_expected, {}))
        fail(u"did not come: "_s + expected.box);
}

Button StrictDoorway::show(const MessageBox &box)
{
    return std::get<Button>(meet(describe(box), box.defaultButton));
}

QString StrictDoorway::ask(const InputBox &box)
{
    return std::get<QString>(meet(describe(box), QString()));
}

QString StrictDoorway::choose(const FileChooser &chooser)
{
    return std::get<QString>(meet(describe(chooser), QString()));
}

QString StrictDoorway::choose(const FolderChooser &chooser)
{
    return std::get<QString>(meet(describe(chooser), QString()));
}

StrictDoorway::Answer StrictDoorway::meet(const QString &box, const Answer &otherwise)
{
    if (m_expected.isEmpty()) {
        fail(u"not expected: "_s + box);
        return otherwise;
    }
    const Expected next = m_expected.takeFirst();
    if (next.box != box) {
        fail(u"came: %1\nexpected: %2"_s.arg(box, next.box));
        return otherwise;
    }
    return next.answer;
}
