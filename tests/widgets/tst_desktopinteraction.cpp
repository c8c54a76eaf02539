#include "widgets/DesktopInteraction.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// Runs answer on the dialog that opens next, once it has the keyboard.
template <class Dialog, class Answer>
void whenOpen(Answer answer)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, answer] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isActiveWindow())
            return;
        timer->deleteLater();
        timer->stop();
        answer(*dialog);
        if (dialog->isVisible()) {
            QTest::qFail("the dialog is still open", __FILE__, __LINE__);
            dialog->reject();
        }
    });
    timer->start(5);
}

} // namespace

class tst_DesktopDoorway : public QObject
{
    Q_OBJECT

    DesktopInteraction m_interaction;

private Q_SLOTS:
    void messageBox()
    {
        QWidget main;
        main.show();
        main.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&main));
        const std::vector<Button> yesNo{Button::Yes, Button::No};
        const std::tuple<std::vector<Button>, Button, Qt::Key, Button> rows[] = {
            {{Button::Ok}, Button::Ok, Qt::Key_Escape, Button::Ok},
            {yesNo, Button::No, Qt::Key_Return, Button::No},
            {yesNo, Button::Yes, Qt::Key_Escape, Button::No},
            {{Button::Yes, Button::No, Button::Stop}, Button::Yes, Qt::Key_Escape, Button::No},
            {{Button::Ok, Button::Stop}, Button::Ok, Qt::Key_Escape, Button::Stop},
        };
        for (const auto &[buttons, defaultButton, key, answer] : rows) {
            const MessageBox box{u"<b>Salt</b> & %1"_s, u"Save Changes"_s, Icon::Question, buttons,
                                 defaultButton};
            whenOpen<QMessageBox>([&, pressed = key](QMessageBox &dialog) {
                QCOMPARE(dialog.text(), box.text);
                QCOMPARE(dialog.textFormat(), Qt::PlainText);
                QCOMPARE(dialog.icon(), QMessageBox::Question);
                QCOMPARE(dialog.parentWidget(), &main);
                QTest::keyClick(&dialog, pressed);
            });
            QCOMPARE(m_interaction.show(box), answer);
        }
    }

    void inputBox()
    {
        const QString mixed = u"a\r\nb\rc\nd\u00A0\t e "_s;
        const std::tuple<Lines, QString, QString, QString> rows[] = {
            // default text, typed at its end (null for Cancel), answer
            {Lines::One, u" Soup"_s, u"s "_s, u" Soups "_s},
            {Lines::One, u"Soup"_s, QString(), QString()},
            {Lines::Several, mixed, u""_s, mixed},
            {Lines::Several, mixed, u"!"_s, u"a\r\nb\r\nc\r\nd\u00A0\t e !"_s},
        };
        for (const auto &[lines, defaultText, typed, answer] : rows) {
            whenOpen<QInputDialog>([lines = lines, typed = typed](QInputDialog &dialog) {
                QCOMPARE(dialog.findChild<QLabel *>()->textFormat(), Qt::PlainText);
                QWidget *edit = dialog.focusWidget();
                QTest::keyClick(edit, Qt::Key_End, Qt::ControlModifier);
                QTest::keyClick(edit, Qt::Key_End);
                QTest::keyClicks(edit, typed);
                if (lines == Lines::Several) { // Tab leads to the button
                    QTest::keyClick(edit, Qt::Key_Tab);
                    edit = dialog.focusWidget();
                }
                QTest::keyClick(edit, typed.isNull() ? Qt::Key_Escape : Qt::Key_Return);
            });
            QCOMPARE(
                m_interaction.ask({u"<i>Prompt</i>"_s, u"Enter <title>"_s, defaultText, lines}),
                answer);
        }
    }
};

QTEST_MAIN(tst_DesktopDoorway)
#include "tst_desktopinteraction.moc"
