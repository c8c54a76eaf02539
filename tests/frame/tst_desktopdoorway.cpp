#include "DesktopDoorway.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
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
    void messageBox_data()
    {
        QTest::addColumn<QList<int>>("buttons");
        QTest::addColumn<int>("defaultButton");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("answer");
        const QList<int> yesNo = {int(Button::Yes), int(Button::No)};
        const QList<int> ok = {int(Button::Ok)};

        QTest::newRow("Ok, Enter")
            << ok << int(Button::Ok) << int(Qt::Key_Return) << int(Button::Ok);
        QTest::newRow("Ok, Esc") << ok << int(Button::Ok) << int(Qt::Key_Escape) << int(Button::Ok);
        QTest::newRow("Enter on Yes")
            << yesNo << int(Button::Yes) << int(Qt::Key_Return) << int(Button::Yes);
        QTest::newRow("Enter on No")
            << yesNo << int(Button::No) << int(Qt::Key_Return) << int(Button::No);
        QTest::newRow("Esc is No")
            << yesNo << int(Button::Yes) << int(Qt::Key_Escape) << int(Button::No);
    }

    void messageBox()
    {
        QFETCH(const QList<int>, buttons);
        QFETCH(const int, defaultButton);
        QFETCH(const int, key);
        MessageBox box{.text = u"<b>Salt</b> & %1"_s,
                       .title = u"Save Changes"_s,
                       .icon = Icon::Question,
                       .buttons = {},
                       .defaultButton = Button(defaultButton)};
        for (const int button : buttons)
            box.buttons.push_back(Button(button));

        QWidget main;
        main.show();
        main.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&main));
        whenOpen<QMessageBox>([&](QMessageBox &dialog) {
            QCOMPARE(dialog.text(), box.text);
            QCOMPARE(dialog.textFormat(), Qt::PlainText);
            QCOMPARE(dialog.windowTitle(), box.title);
            QCOMPARE(dialog.icon(), QMessageBox::Question);
            QCOMPARE(dialog.buttons().size(), buttons.size());
            QCOMPARE(dialog.parentWidget(), &main);
            QTest::keyClick(&dialog, Qt::Key(key));
        });
        QTEST(int(m_doorway.show(box)), "answer");
    }

    void inputBox_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<QString>("defaultText");
        QTest::addColumn<QString>("typed"); // at the end of the default text; null for Cancel
        QTest::addColumn<QString>("answer");
        const int one = int(Lines::One);
        const int several = int(Lines::Several);
        const QString mixed = u"a\r\nb\rc\nd\u00A0\t e "_s;

        QTest::newRow("one line") << one << u"Soup"_s << u"s "_s << u"Soups "_s;
        QTest::newRow("one line, as it was") << one << u" Soup "_s << u""_s << u" Soup "_s;
        QTest::newRow("one line, Cancel") << one << u"Soup"_s << QString() << QString();
        QTest::newRow("several lines, as they were") << several << mixed << u""_s << mixed;
        QTest::newRow("several lines, changed")
            << several << mixed << u"!"_s << u"a\r\nb\r\nc\r\nd\u00A0\t e !"_s;
        QTest::newRow("several lines, a new one") << several << u"a"_s << u"\rb"_s << u"a\r\nb"_s;
        QTest::newRow("several lines, Cancel") << several << mixed << QString() << QString();
    }

    void inputBox()
    {
        QFETCH(const int, lines);
        QFETCH(const QString, defaultText);
        QFETCH(const QString, typed);
        whenOpen<QInputDialog>([&](QInputDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), u"Enter <title>"_s);
            const auto *label = dialog.findChild<QLabel *>();
            QCOMPARE(label->text(), u"<i>Prompt</i>"_s);
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QWidget *edit = dialog.focusWidget();
            if (auto *several = qobject_cast<QPlainTextEdit *>(edit))
                several->moveCursor(QTextCursor::End);
            else
                static_cast<QLineEdit *>(edit)->end(false);
            for (const QChar c : typed) {
                if (c == u'\r')
                    QTest::keyClick(edit, Qt::Key_Return);
                else
                    QTest::keyClick(edit, c.toLatin1());
            }
            if (typed.isNull())
                QTest::keyClick(edit, Qt::Key_Escape);
            else if (lines == int(Lines::One))
                QTest::keyClick(edit, Qt::Key_Return);
            else { // Tab leads to the button
                QTest::keyClick(edit, Qt::Key_Tab);
                QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
            }
        });
        QTEST(m_doorway.ask({.prompt = u"<i>Prompt</i>"_s,
                             .title = u"Enter <title>"_s,
                             .defaultText = defaultText,
                             .lines = Lines(lines)}),
              "answer");
    }

    void choosers()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"menu.htm"_s);
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        QVERIFY(QDir(directory.path()).mkdir(u"pages"_s));
        const FileChooser chooser{.title = u"Choose template file"_s,
                                  .description = u"HTML Documents"_s,
                                  .patterns = {u"*.htm"_s, u"*.html"_s},
                                  .directory = directory.path()};

        whenOpen<QFileDialog>([&](QFileDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), chooser.title);
            QCOMPARE(dialog.nameFilters(), QStringList{u"HTML Documents (*.htm *.html)"_s});
            QCOMPARE(dialog.directory(), QDir(directory.path()));
            enter(dialog, path);
        });
        QCOMPARE(m_doorway.choose(chooser), path);

        whenOpen<QFileDialog>(
            [&](QFileDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QCOMPARE(m_doorway.choose(chooser), QString());

        whenOpen<QFileDialog>(
            [&](QFileDialog &dialog) { enter(dialog, directory.filePath(u"pages"_s)); });
        QCOMPARE(
            m_doorway.choose(FolderChooser{.title = u"Folder"_s, .directory = directory.path()}),
            directory.filePath(u"pages"_s));
    }
};

QTEST_MAIN(tst_DesktopDoorway)
#include "tst_desktopdoorway.moc"
