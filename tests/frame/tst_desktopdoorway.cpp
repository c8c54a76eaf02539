#include "DesktopDoorway.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
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

void enter(QFileDialog &dialog, const QString &path)
{
    auto *edit = dialog.findChild<QLineEdit *>();
    edit->setText(path);
    QTest::keyClick(edit, Qt::Key_Return);
}

} // namespace

class tst_DesktopDoorway : public QObject
{
    Q_OBJECT

    DesktopDoorway m_doorway;

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
            {yesNo, Button::Yes, Qt::Key_Return, Button::Yes},
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
                QCOMPARE(dialog.windowTitle(), box.title);
                QCOMPARE(dialog.icon(), QMessageBox::Question);
                QCOMPARE(dialog.parentWidget(), &main);
                QTest::keyClick(&dialog, pressed);
            });
            QCOMPARE(m_doorway.show(box), answer);
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
        for (const auto &row : rows) {
            const auto &[lines, defaultText, typed, answer] = row;
            whenOpen<QInputDialog>([&row](QInputDialog &dialog) {
                QCOMPARE(dialog.windowTitle(), u"Enter <title>"_s);
                QCOMPARE(dialog.findChild<QLabel *>()->textFormat(), Qt::PlainText);
                QWidget *edit = dialog.focusWidget();
                QTest::keyClick(edit, Qt::Key_End, Qt::ControlModifier);
                QTest::keyClick(edit, Qt::Key_End);
                QTest::keyClicks(edit, std::get<2>(row));
                if (std::get<2>(row).isNull())
                    QTest::keyClick(edit, Qt::Key_Escape);
                else if (std::get<Lines>(row) == Lines::One)
                    QTest::keyClick(edit, Qt::Key_Return);
                else { // Tab leads to the button
                    QTest::keyClick(edit, Qt::Key_Tab);
                    QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
                }
            });
            QCOMPARE(m_doorway.ask({u"<i>Prompt</i>"_s, u"Enter <title>"_s, defaultText, lines}),
                     answer);
        }
    }

    void choosers()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"menu.htm"_s);
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        const FileChooser chooser{.title = u"Choose template file"_s,
                                  .description = u"HTML Documents"_s,
                                  .patterns = {u"*.htm"_s, u"*.html"_s},
                                  .defaultSuffix = u"htm"_s,
                                  .directory = directory.path()};
        whenOpen<QFileDialog>([&](QFileDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), chooser.title);
            QCOMPARE(dialog.nameFilters(), QStringList{u"HTML Documents (*.htm *.html)"_s});
            QCOMPARE(dialog.directory(), QDir(directory.path()));
            enter(dialog, directory.filePath(u"menu"_s));
        });
        QCOMPARE(m_doorway.choose(chooser), path);
        whenOpen<QFileDialog>(
            [](QFileDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QCOMPARE(m_doorway.choose(chooser), QString());

        QVERIFY(QDir(directory.path()).mkdir(u"pages"_s));
        const QString pages = directory.filePath(u"pages"_s);
        whenOpen<QFileDialog>([&](QFileDialog &dialog) { enter(dialog, pages); });
        QCOMPARE(m_doorway.choose(FolderChooser{u"Folder"_s, directory.path()}), pages);
    }
};

QTEST_MAIN(tst_DesktopDoorway)
#include "tst_desktopdoorway.moc"
