#include "support/TestWindows.h"

#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

class tst_ChildWindow : public QObject
{
    Q_OBJECT

    std::unique_ptr<MainWindow> m_main;

    List &show()
    {
        auto &list = m_main->frame.load<List>();
        m_main->frame.show(list);
        QCoreApplication::processEvents();
        eventLog.clear();
        return list;
    }
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(m_main->windowHandle(), key, modifiers);
    }

private Q_SLOTS:
    void init() { m_main = std::make_unique<MainWindow>(); }

    // Enter presses the button that has the focus or the default button, Esc the cancel button.
    void keys()
    {
        auto *text = new QPlainTextEdit;
        for (QWidget *control : std::initializer_list<QWidget *>{
                 new QListWidget, new QTableWidget(1, 1), new QLineEdit, new QComboBox, text}) {
            List &list = show();
            list.layout()->addWidget(control);
            control->show();
            control->setFocus();
            type(Qt::Key_Return);
            type(Qt::Key_Enter);
            QCOMPARE(eventLog.join(u' '), control == text ? u""_s : u"List! List!"_s);
            QVERIFY(control != text || text->toPlainText() == u"\n\n"_s);
            type(Qt::Key_Escape);
            QVERIFY(!m_main->frame.find<List>());
        }
        show().done.setFocus();
        type(Qt::Key_Return);
        QVERIFY(!m_main->frame.find<List>());
    }

    // Nothing is pressed that the mouse could not press, and a held key presses once.
    void notPressed()
    {
        List &list = show();
        list.done.setFocus();
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
        for (QPushButton *button : {&list.done, &list.button}) // one is the default
            QApplication::sendEvent(button, &held);
        list.list.setFocus();
        type(Qt::Key_Return, Qt::ControlModifier);
        list.button.setEnabled(false);
        list.done.hide();
        type(Qt::Key_Return);
        type(Qt::Key_Escape);
        QCOMPARE(m_main->frame.find<List>(), &list);
        QCOMPARE(eventLog, QStringList());
    }

    // The form's button is pressed every time, though a menu has the same key, as long as it can
    // be.
    void accessKeys()
    {
        List &list = show();
        list.button.setText(u"&View"_s);
        list.list.setFocus();
        for (const int times : {1, 2, 3}) {
            m_main->menuBar()->actions().constFirst()->setEnabled(times != 2);
            type(Qt::Key_V, Qt::AltModifier);
            QTRY_COMPARE(eventLog.size(), times);
            m_main->resize(700 + 50 * times, 600); // a menu bar takes its keys anew then
            QCoreApplication::processEvents();
        }
        QVERIFY(list.list.hasFocus());
        list.button.setEnabled(false);
        type(Qt::Key_V, Qt::AltModifier);
        QTRY_VERIFY(m_main->menuBar()->activeAction());
        QCOMPARE(eventLog.size(), 3);
    }

    // A handler that fails is told, with the title of its window and not of the opener. A window
    // that cannot be loaded is gone, and the next try works.
    void failures()
    {
        const auto failsIn = [this](const QString &handler, const std::function<void()> &act) {
            TestWindow::failing = handler;
            m_main->interaction.expect(
                {u"Something went wrong in \"TestWindow's 100%1\":\nTable “Rezepte” is gone"_s,
                 u"Error"_s, Icon::Exclamation});
            act();
            QCoreApplication::processEvents();
            m_main->interaction.checkAllCame();
            TestWindow::failing.clear();
        };
        for (const QString &handler : {u"Form_Load"_s, u"openDataSources"_s}) {
            failsIn(handler, [this] {
                QVERIFY(!m_main->frame.boundary().run(u"opener"_s, [this] {
                    m_main->open<List>();
                    QFAIL("went on");
                }));
            });
            QVERIFY(!m_main->frame.find<List>() && !m_main->frame.activeChild());
        }
        List &list = show();
        failsIn(u"press"_s, [&] { list.button.click(); });
        failsIn(u"Form_Deactivate"_s, [&] { m_main->frame.hide(list); });
        QVERIFY(!list.isVisible());
        failsIn(u"Form_Activate"_s, [&] { m_main->frame.show(list); });
        list.button.click();
        QCOMPARE(eventLog.constLast(), u"List!"_s);
    }

    // Qt shows a window title with its marks resolved: what it makes of ours is the title again.
    void titles()
    {
        List &list = show();
        QWidget *shell = list.parentWidget();
        for (const QString &title :
             {u"Soup [*] of [*][*] the day [*"_s, u"<b>Soup</b> &amp; \"bread\""_s}) {
            list.setTitle(title);
            QCOMPARE(list.title(), title);
            QWidget shown;
            shown.setWindowTitle(shell->windowTitle());
            shown.show();
            QVERIFY(shown.windowHandle()->title().startsWith(title));

            QHelpEvent help(QEvent::ToolTip, {100, 8}, shell->mapToGlobal(QPoint(100, 8)));
            QApplication::sendEvent(shell, &help);
            QCOMPARE(QToolTip::text(), u"<qt>%1</qt>"_s.arg(title.toHtmlEscaped()));
            QToolTip::hideText();
        }
    }

    // A new window stands in the frame, below the one before, and comes along when it shrinks.
    void places()
    {
        const auto isInside = [this](const QWidget &shell) {
            return m_main->area.viewport()->rect().contains(shell.geometry());
        };
        QWidget &shell = *show().parentWidget();
        auto &other = m_main->frame.load<Record>();
        m_main->frame.show(other);
        QWidget &otherShell = *other.parentWidget();
        QVERIFY(isInside(shell) && isInside(otherShell) && otherShell.x() > shell.x());

        // The user may move it out in part; it is the frame that takes it along.
        shell.move(m_main->area.viewport()->rect().bottomRight() - QPoint(50, 50));
        show();
        QVERIFY(!isInside(shell));
        m_main->resize(500, 560);
        QTRY_VERIFY(isInside(shell) && isInside(otherShell));
        m_main->resize(250, 300); // smaller than a window likes to be
        auto &late = m_main->frame.load<Tools>();
        m_main->frame.show(late);
        QTRY_VERIFY(isInside(*late.parentWidget()));
    }
};

QTEST_MAIN(tst_ChildWindow)
#include "tst_childwindow.moc"
