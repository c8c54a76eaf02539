#include "widgets/LineEdit.h"

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QTest>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

using Input = std::function<void(LineEdit &)>;

Input typed(const QString &text)
{
    return [text](LineEdit &edit) {
        for (const QString &character : text.split(u'_')) { // each is one key press
            QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, character);
            QCoreApplication::sendEvent(&edit, &key);
        }
    };
}

Input pasted(const QString &text)
{
    return [text](LineEdit &edit) {
        QGuiApplication::clipboard()->setText(text);
        QTest::keySequence(&edit, QKeySequence::Paste);
    };
}

Input pastedByMenu(const QString &text)
{
    return [text](LineEdit &edit) {
        QGuiApplication::clipboard()->setText(text);
        edit.paste(); // the slot of the menu's action, which comes without an event
        QCoreApplication::sendPostedEvents(&edit, QEvent::MetaCall);
    };
}

Input dropped(const QString &text)
{
    return [text](LineEdit &edit) {
        QMimeData data;
        data.setText(text);
        QDropEvent drop(edit.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, {});
        edit.event(&drop); // QApplication would deliver it only after a drag
    };
}

Input composed(const QString &text)
{
    return [text](LineEdit &edit) {
        QInputMethodEvent input;
        input.setCommitString(text);
        QCoreApplication::sendEvent(&edit, &input);
    };
}

} // namespace

class tst_LineEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void input_data();
    void input();
    void keepsTheStoredText_data();
    void keepsTheStoredText();
};

void tst_LineEdit::input_data()
{
    QTest::addColumn<QString>("stored"); // [selected], or | is the cursor
    QTest::addColumn<Input>("input");
    QTest::addColumn<QString>("expected"); // | is the cursor
    const auto row = [](const char *name, const QString &stored, const Input &input,
                        const QString &expected) {
        QTest::newRow(name) << stored << input << expected;
    };
    row("typed", u"ab|"_s, typed(u"c"_s), u"abc|"_s);
    row("line break becomes a blank", u"|"_s, pasted(u"a\nb"_s), u"a b|"_s);
    row("CR LF becomes one blank", u"x|y"_s, pasted(u"a\r\nb"_s), u"xa b|y"_s);
    row("tab becomes a blank", u"|"_s, pasted(u"a\tb"_s), u"a b|"_s);
    row("line separator becomes a blank", u"|"_s, pasted(u"a\u2028b"_s), u"a b|"_s);
    row("line breaks at the ends go", u"x|y"_s, pasted(u"\n\tab\r\n"_s), u"xab|y"_s);
    row("blanks at the ends stay", u"x|y"_s, pasted(u" a "_s), u"x a |y"_s);
    row("only line breaks", u"x|y"_s, pasted(u"\n\n"_s), u"x|y"_s);
    row("pasted by the menu", u"x|y"_s, pastedByMenu(u"a\nb\n"_s), u"xa b|y"_s);
    row("dropped", u"|"_s, dropped(u"a\nb\n"_s), u"a b|"_s);
    row("composed", u"|"_s, composed(u"a\nb\n"_s), u"a b|"_s);
    row("composed over a selection", u"x[yz]"_s, composed(u"a\nb"_s), u"xa b|"_s);

    row("typed at the limit", u"abc|de"_s, typed(u"x"_s), u"abc|de"_s);
    row("pasted up to the limit", u"a|bc"_s, pasted(u"xyz"_s), u"axy|bc"_s);
    row("dropped up to the limit", u"abc|"_s, dropped(u"xyz"_s), u"abcxy|"_s);
    row("composed up to the limit", u"a|bc"_s, composed(u"xyz"_s), u"axy|bc"_s);
    row("repeated letters up to the limit", u"a|aa"_s, pasted(u"aaa"_s), u"aaa|aa"_s);
    row("one character replaced at the limit", u"ab[c]de"_s, typed(u"x"_s), u"abx|de"_s);
    row("replaced by as much as fits", u"a[b]cde"_s, pasted(u"xyz"_s), u"ax|cde"_s);
    row("replaced by a longer text with the same start", u"[ab]cd"_s, pasted(u"abxyz"_s),
        u"abx|cd"_s);
    row("one character of a longer text replaced", u"ab[c]defgh"_s, typed(u"x"_s), u"abx|defgh"_s);
    row("longer text does not grow", u"abcdefgh|"_s, typed(u"x"_s), u"abcdefgh|"_s);
    row("emoji typed at the limit", u"abcd|"_s, typed(u"\U0001F35E"_s), u"abcd|"_s);
    row("emoji pasted at the limit", u"abc|d"_s, pasted(u"x\U0001F35E"_s), u"abcx|d"_s);
    row("emoji that fits", u"abc|"_s, typed(u"\U0001F35E"_s), u"abc\U0001F35E|"_s);
    row("emoji replaced by another", u"abc[\U0001F35E]"_s, pasted(u"\U0001F35F\U0001F35E"_s),
        u"abc\U0001F35F|"_s);
    row("letter with its accent", u"abcd|"_s, pasted(u"e\u0301x"_s), u"abcd|"_s);
    row("flag of two characters", u"a|"_s, pasted(u"x\U0001F1E9\U0001F1EA"_s), u"ax|"_s);
}

// Each input is one step of undo and redo.
void tst_LineEdit::input()
{
    QFETCH(QString, stored);
    QFETCH(const Input, input);
    QFETCH(QString, expected);
    constexpr int limit = 5;
    LineEdit edit;
    edit.setMaxInputLength(limit);
    const auto selectionStart = static_cast<int>(stored.indexOf(u'['));
    const auto selectionEnd = static_cast<int>(stored.indexOf(u']')) - 1;
    const auto cursor = static_cast<int>(stored.indexOf(u'|'));
    stored.remove(QRegularExpression(u"[][|]"_s));
    edit.showStored(stored);
    if (cursor >= 0)
        edit.setCursorPosition(cursor);
    else
        edit.setSelection(selectionStart, selectionEnd - selectionStart);

    input(edit);
    QCOMPARE(edit.text().insert(edit.cursorPosition(), u'|'), expected);
    expected.remove(u'|');
    if (expected == stored)
        return;
    QTest::keySequence(&edit, QKeySequence::Undo);
    QCOMPARE(edit.text(), stored);
    QTest::keySequence(&edit, QKeySequence::Redo);
    QCOMPARE(edit.text(), expected);
}

void tst_LineEdit::keepsTheStoredText_data()
{
    QTest::addColumn<QString>("stored");
    QTest::newRow("long") << u"12345678"_s;
    QTest::newRow("with line breaks and a tab") << u"\na\tb\r\n"_s;
}

// What the user removes comes back with Undo, and what is typed then is checked as before.
void tst_LineEdit::keepsTheStoredText()
{
    QFETCH(const QString, stored);
    LineEdit edit;
    edit.setMaxInputLength(5);
    edit.showStored(stored);
    QCOMPARE(edit.text(), stored);
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClick(&edit, Qt::Key_End);
    for (int i = 1; i < stored.size(); ++i)
        QTest::keyClick(&edit, Qt::Key_Backspace);
    QCOMPARE(edit.text(), QString());
    QTest::keySequence(&edit, QKeySequence::Undo);
    QCOMPARE(edit.text(), stored.sliced(1));
    QTest::keySequence(&edit, QKeySequence::Undo);
    QCOMPARE(edit.text(), stored);
    QTest::keySequence(&edit, QKeySequence::SelectAll);
    pasted(u"x\ny"_s)(edit);
    QCOMPARE(edit.text(), u"x y"_s);
}

QTEST_MAIN(tst_LineEdit)
#include "tst_lineedit.moc"
