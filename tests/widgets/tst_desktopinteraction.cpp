#include "support/Rows.h"
#include "widgets/DesktopInteraction.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <functional>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Calls answer with the dialog that opens next, as soon as it is the active window.
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

void createFile(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

QProgressDialog *visibleProgress()
{
    return qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
}

} // namespace

class tst_DesktopInteraction : public QObject
{
    Q_OBJECT

    std::chrono::steady_clock::time_point m_now; // moves only when a test says so
    DesktopInteraction m_interaction{[this] { return m_now; }};
    QWidget m_main;

    // Lets the progress box appear.
    QProgressDialog *workUntilVisible(Progress &progress, const QString &label)
    {
        m_now += 500ms;
        return progress.update(0, 10000, label) ? visibleProgress() : nullptr;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        m_main.show();
    }

    void init()
    {
        m_main.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_main));
    }

    void messageBox_data()
    {
        using Buttons = std::vector<Button>;
        QTest::addColumn<Buttons>("buttons");
        QTest::addColumn<Button>("defaultButton");
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Button>("answer");
        QTest::newRow("Esc presses the only button")
            << Buttons{Button::Ok} << Button::Ok << Qt::Key_Escape << Button::Ok;
        QTest::newRow("Enter presses the default button")
            << Buttons{Button::Yes, Button::No} << Button::No << Qt::Key_Return << Button::No;
        QTest::newRow("Esc presses No")
            << Buttons{Button::Yes, Button::No} << Button::Yes << Qt::Key_Escape << Button::No;
        QTest::newRow("Esc presses No rather than Stop")
            << Buttons{Button::Yes, Button::No, Button::Stop} << Button::Yes << Qt::Key_Escape
            << Button::No;
        QTest::newRow("Esc presses Stop")
            << Buttons{Button::Ok, Button::Stop} << Button::Ok << Qt::Key_Escape << Button::Stop;
    }

    void messageBox()
    {
        QFETCH(const std::vector<Button>, buttons);
        QFETCH(const Button, defaultButton);
        QFETCH(const Qt::Key, key);
        const MessageBox box{u"<b>Salt</b> & %1"_s, u"Save Changes"_s, Icon::Question, buttons,
                             defaultButton};
        whenOpen<QMessageBox>([&](QMessageBox &dialog) {
            QCOMPARE(dialog.text(), box.text);
            QCOMPARE(dialog.textFormat(), Qt::PlainText);
            QCOMPARE(dialog.icon(), QMessageBox::Question);
            QCOMPARE(dialog.parentWidget(), &m_main);
            QTest::keyClick(&dialog, key);
        });
        QTEST(m_interaction.show(box), "answer");
    }

    void checkBox_data()
    {
        addRows<QString, bool>({{"not ticked", QString(), false},
                                {"with the mouse", u"click"_s, true},
                                {"with its access key", u"d"_s, true},
                                {"with Tab and the space bar", u"\t "_s, true}});
    }

    // It is reached with the keyboard, and the buttons stay on the screen.
    void checkBox()
    {
        const auto [keys, expected] = fetchRow<QString, bool>();
        whenOpen<QMessageBox>([&keys = keys](QMessageBox &dialog) {
            QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
            if (keys == u"click"_s)
                dialog.checkBox()->click();
            else if (keys == u"d"_s)
                QTest::keyClick(&dialog, Qt::Key_D, Qt::AltModifier);
            else
                for (const QChar key : keys)
                    QTest::keyClick(dialog.focusWidget(), key.toLatin1());
            QTRY_COMPARE(dialog.checkBox()->isChecked(), !keys.isEmpty());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        bool isChecked = !expected;
        m_interaction.show({.text = u"Boil.\n"_s.repeated(300),
                            .title = u"Boil"_s,
                            .buttons = {Button::Yes, Button::No},
                            .defaultButton = Button::No,
                            .checkBox = u"&Do it"_s,
                            .isChecked = &isChecked});
        QCOMPARE(isChecked, expected);
    }

    void longMessage_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("lines") << u"Boil.\n"_s.repeated(300);
        QTest::newRow("words") << u"Boil. "_s.repeated(3000);
        QTest::newRow("one word") << QString(20000, u'x');
    }

    // A long text scrolls, and keeps its size if the wheel is turned with Ctrl.
    void longMessage()
    {
        QFETCH(const QString, text);
        whenOpen<QMessageBox>([&](QMessageBox &dialog) {
            QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
            auto *edit = dialog.findChild<QPlainTextEdit *>();
            QVERIFY(edit);
            QCOMPARE(edit->toPlainText(), text);
            QVERIFY(edit->isReadOnly());
            QCOMPARE(QAccessible::queryAccessibleInterface(edit)->text(QAccessible::Name),
                     u"Recipe Description"_s);
            const int fontHeight = edit->fontMetrics().height();
            const QPoint place = edit->rect().center();
            QWheelEvent event(place, edit->mapToGlobal(place), {}, {0, -120}, Qt::NoButton,
                              Qt::ControlModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(edit->viewport(), &event);
            QCOMPARE(edit->fontMetrics().height(), fontHeight);
            QVERIFY(edit->verticalScrollBar()->value() > 0);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        m_interaction.show({.text = text, .title = u"Recipe Description"_s});
    }

    void details_data()
    {
        addRows<QString, QString>({{"a few", u"Boil."_s, u"Salt\nPepper"_s},
                                   {"many", u"Boil."_s, u"Salt\n"_s.repeated(300) + u"Pepper"_s},
                                   {"below a long text", u"Boil.\n"_s.repeated(300), u"Salt"_s}});
    }

    // They are copied with the keyboard, and the button stays the default.
    void details()
    {
        const auto [text, details] = fetchRow<QString, QString>();
        whenOpen<QMessageBox>([&details = details](QMessageBox &dialog) {
            QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
            QPlainTextEdit *edit = nullptr;
            for (auto *candidate : dialog.findChildren<QPlainTextEdit *>()) {
                if (candidate->toPlainText() == details)
                    edit = candidate;
            }
            QVERIFY(edit && edit->isVisible());
            for (int i = 0; i < 3 && dialog.focusWidget() != edit; ++i)
                QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            QTest::keySequence(dialog.focusWidget(), QKeySequence::SelectAll);
            QTest::keySequence(dialog.focusWidget(), QKeySequence::Copy);
            QCOMPARE(QGuiApplication::clipboard()->text(), details);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        m_interaction.show({.text = text, .title = u"Boil"_s, .details = details});
    }

    void inputBox_data()
    {
        const QString mixed = u"a\r\nb\rc\nd\u00A0\t e "_s;
        QTest::addColumn<Lines>("lines");
        QTest::addColumn<QString>("defaultText");
        QTest::addColumn<QString>("typed"); // at the end, or pasted; null for Cancel
        QTest::addColumn<QString>("answer");
        QTest::newRow("spaces are kept") << Lines::One << u" Soup"_s << u"s "_s << u" Soups "_s;
        QTest::newRow("default text") << Lines::One << u"Soup"_s << u""_s << u"Soup"_s;
        QTest::newRow("line breaks are pasted")
            << Lines::One << u"My "_s << u"Bean\nSoup\n"_s << u"My Bean Soup"_s;
        QTest::newRow("cancelled") << Lines::One << u"Soup"_s << QString() << QString();
        QTest::newRow("unchanged lines") << Lines::Several << mixed << u""_s << mixed;
        QTest::newRow("changed lines")
            << Lines::Several << mixed << u"!"_s << u"a\r\nb\r\nc\r\nd\u00A0\t e !"_s;
    }

    void inputBox()
    {
        QFETCH(const Lines, lines);
        QFETCH(const QString, defaultText);
        QFETCH(const QString, typed);
        whenOpen<QDialog>([&](QDialog &dialog) {
            QCOMPARE(dialog.findChild<QLabel *>()->textFormat(), Qt::PlainText);
            QWidget *edit = dialog.focusWidget();
            QCOMPARE(QAccessible::queryAccessibleInterface(edit)->text(QAccessible::Name),
                     u"<i>Prompt</i>"_s);
            QTest::keyClick(edit, Qt::Key_End, Qt::ControlModifier);
            QTest::keyClick(edit, Qt::Key_End);
            QGuiApplication::clipboard()->setText(typed);
            if (typed.contains(u'\n'))
                QTest::keySequence(edit, QKeySequence::Paste);
            else
                QTest::keyClicks(edit, typed);
            if (lines == Lines::Several) { // Tab leads to the button
                QTest::keyClick(edit, Qt::Key_Tab);
                edit = dialog.focusWidget();
            }
            QTest::keyClick(edit, typed.isNull() ? Qt::Key_Escape : Qt::Key_Return);
        });
        QTEST(m_interaction.ask({u"<i>Prompt</i>"_s, u"Enter <title>"_s, defaultText, lines}),
              "answer");
    }

    void longPrompt()
    {
        whenOpen<QDialog>([](QDialog &dialog) {
            QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
            dialog.reject();
        });
        m_interaction.ask({u"Boil. "_s.repeated(3000), u"Boil"_s, u"Stir."_s, Lines::Several});
    }

    void fileChooser_data()
    {
        QTest::addColumn<QString>("typed"); // null for Cancel
        QTest::addColumn<QString>("answer"); // inside the folder
        QTest::newRow("full name") << u"page.htm"_s << u"page.htm"_s;
        QTest::newRow("name without suffix") << u"page"_s << u"page.htm"_s;
        QTest::newRow("name of another kind") << u"notes.txt"_s << u"notes.txt"_s;
        QTest::newRow("cancelled") << QString() << QString();
    }

    void fileChooser()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, answer);
        const QTemporaryDir folder;
        for (const QString &name : {u"page.htm"_s, u"notes.txt"_s})
            createFile(folder.filePath(name));
        whenOpen<QFileDialog>([&](QFileDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), u"Choose a template"_s);
            QCOMPARE(dialog.parentWidget(), &m_main);
            QCOMPARE(dialog.directory(), QDir(folder.path()));
            QCOMPARE(dialog.nameFilters(), QStringList{u"HTML Documents (*.htm *.html)"_s});
            // QFileDialog opens a message box if it does not find the file; close that.
            QTimer::singleShot(1000, &dialog, [] {
                if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
                    box->reject();
            });
            QTest::keyClicks(dialog.focusWidget(), typed);
            QTest::keyClick(dialog.focusWidget(), typed.isNull() ? Qt::Key_Escape : Qt::Key_Return);
        });
        const QString chosen =
            m_interaction.choose(FileChooser{.title = u"Choose a template"_s,
                                             .description = u"HTML Documents"_s,
                                             .patterns = {u"*.htm"_s, u"*.html"_s},
                                             .defaultSuffix = u"htm"_s,
                                             .directory = folder.path()});
        QCOMPARE(chosen, answer.isNull() ? QString() : folder.filePath(answer));
    }

    void folderChooser_data()
    {
        QTest::addColumn<QString>("typed"); // null for Cancel
        QTest::addColumn<QString>("answer"); // inside the folder that is listed first
        QTest::newRow("folder inside") << u"pages"_s << u"/pages"_s;
        QTest::newRow("cancelled") << QString() << QString();
    }

    void folderChooser()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, answer);
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"pages"_s));
        createFile(folder.filePath(u"page.htm"_s));
        whenOpen<QFileDialog>([&](QFileDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), u"Choose a folder"_s);
            QCOMPARE(dialog.parentWidget(), &m_main);
            QCOMPARE(dialog.directory(), QDir(folder.path()));
            auto *name = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
            name->clear();
            QTest::keyClicks(name, typed);
            QTest::keyClick(name, typed.isNull() ? Qt::Key_Escape : Qt::Key_Return);
        });
        const QString chosen = m_interaction.choose(
            FolderChooser{.title = u"Choose a folder"_s, .directory = folder.path()});
        QCOMPARE(chosen, answer.isNull() ? QString() : folder.path() + answer);
    }

    // The label is elided to one line, and what it contains is neither rich text nor a line break.
    void progress()
    {
        const auto progress = m_interaction.startProgress(u"Export"_s);
        const QString name = u"<b>Soup\n</b>"_s + QString(200, u'x') + u"end"_s;
        const auto *box = workUntilVisible(*progress, name);
        QVERIFY(box);
        QCOMPARE(box->windowTitle(), u"Export"_s);
        QCOMPARE(box->parentWidget(), &m_main);
        const QStringList lines = box->labelText().split(u'\n');
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines[1].startsWith(u"<b>Soup\u240A</b>"_s) && lines[1].endsWith(u"end"_s)
                && lines[1].size() < 100);
        QCOMPARE(box->findChild<QLabel *>()->textFormat(), Qt::PlainText);

        m_now += 100ms;
        QVERIFY(progress->update(2499, 10000, u"Salt"_s));
        QCOMPARE(box->labelText(), u"2,500 of 10,000\nSalt"_s);
        const auto *bar = box->findChild<QProgressBar *>();
        QCOMPARE(bar->value(), 2499);
        QCOMPARE(bar->maximum(), 10000);
    }

    void progressAppears_data()
    {
        using Times = QList<int>;
        addRows<Times, int>({
            // Milliseconds that the items take, negative ones for those that a question is open,
            // and how many of them are over when the box appears.
            {"short items", Times(10, 100), 5},
            {"long items", Times(3, 3000), 1},
            {"questions", {-9000, 200, -9000, 200, -9000, 99, -1, 1}, 8},
            {"no work", Times(50, -9000), 0},
        });
    }

    // It appears after half a second of work, whatever an item costs and the user thinks.
    void progressAppears()
    {
        const auto [times, expected] = fetchRow<QList<int>, int>();
        const auto progress = m_interaction.startProgress(u"Import"_s);
        int over = 0;
        while (over < times.size() && !visibleProgress()) {
            const std::chrono::milliseconds time(times[over]);
            if (time < 0ms) {
                whenOpen<QMessageBox>([this, time](QMessageBox &question) {
                    m_now -= time;
                    question.accept();
                });
                m_interaction.showError(u"Error"_s, u"Bad"_s);
            } else {
                m_now += time;
            }
            ++over;
            QVERIFY(progress->update(over, 100, u"soup.srf"_s));
        }
        QCOMPARE(visibleProgress() ? over : 0, expected);
        // A question that is open for longer runs the event loop.
        const auto windows = QApplication::topLevelWidgets();
        for (const QWidget *window : windows) {
            const auto timers = window->findChildren<QTimer *>();
            for (const QTimer *timer : timers)
                QVERIFY(!qobject_cast<const QProgressDialog *>(window) || !timer->isActive());
        }
    }

    void progressIsCancelled_data()
    {
        using Act = std::function<void(QProgressDialog &)>;
        QTest::addColumn<Act>("act");
        QTest::newRow("Stop") << Act([](QProgressDialog &box) {
            auto *stop = box.findChild<QPushButton *>();
            QCOMPARE(stop->text(), u"&Stop"_s);
            QTest::mouseClick(stop, Qt::LeftButton);
        });
        QTest::newRow("Esc") << Act([](QProgressDialog &box) {
            QTRY_COMPARE(QApplication::activeWindow(), &box);
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        QTest::newRow("close box") << Act([](QProgressDialog &box) { box.close(); });
    }

    void progressIsCancelled()
    {
        QFETCH(const std::function<void(QProgressDialog &)>, act);
        const auto progress = m_interaction.startProgress(u"Export"_s);
        auto *box = workUntilVisible(*progress, u"Soup"_s);
        QVERIFY(box);
        act(*box);
        m_now += 200ms;
        QVERIFY(!progress->update(50, 100, u"Soup"_s));
        QVERIFY(!box->isVisible());
    }
};

QTEST_MAIN(tst_DesktopInteraction)
#include "tst_desktopinteraction.moc"
