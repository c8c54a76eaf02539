#include "support/Rows.h"
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

    using Create = std::function<QWidget *()>;
    using Act = std::function<void()>;

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

    // Expects the error of the handler that throws during the act.
    void failIn(const QString &handler, const std::function<void()> &act,
                SourceLine line = SourceLine::current())
    {
        TestWindow::failing = handler;
        m_main->interaction.expect(
            {u"Something went wrong in \"TestWindow's 100%1\":\nTable “Rezepte” is gone"_s,
             u"Error"_s, Icon::Exclamation},
            Button::Ok, line);
        act();
        QCoreApplication::processEvents();
        m_main->interaction.checkAllCame();
        TestWindow::failing.clear();
    }

private Q_SLOTS:
    void init() { m_main = std::make_unique<MainWindow>(); }

    void keys_data()
    {
        QTest::addColumn<Create>("create");
        QTest::addColumn<QString>("events");
        QTest::newRow("list") << Create([] { return new QListWidget; }) << u"List! List!"_s;
        QTest::newRow("table") << Create([] { return new QTableWidget(1, 1); }) << u"List! List!"_s;
        QTest::newRow("line edit") << Create([] { return new QLineEdit; }) << u"List! List!"_s;
        QTest::newRow("combo box") << Create([] { return new QComboBox; }) << u"List! List!"_s;
        QTest::newRow("edit of several lines")
            << Create([] { return new QPlainTextEdit; }) << u""_s;
        QTest::newRow("button") << Create([] { return new QPushButton; }) << u""_s;
    }

    // Enter presses the default button, Esc the cancel button, whatever control has the focus. The
    // exceptions for Enter are another button and an edit of several lines.
    void keys()
    {
        QFETCH(const Create, create);
        List &list = show();
        QWidget *control = create();
        list.layout()->addWidget(control);
        control->show();
        control->setFocus();
        type(Qt::Key_Return);
        type(Qt::Key_Enter);
        QTEST(eventLog.join(u' '), "events");
        if (const auto *text = qobject_cast<QPlainTextEdit *>(control))
            QCOMPARE(text->toPlainText(), u"\n\n"_s);
        type(Qt::Key_Escape);
        QVERIFY(!m_main->frame.find<List>());
    }

    void enterPressesTheFocusedButton()
    {
        show().done.setFocus();
        type(Qt::Key_Return);
        QVERIFY(!m_main->frame.find<List>());
    }

    // The keys press no button that is disabled or hidden, and a held key presses only once.
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

    // An access key that a menu has as well presses the window's button, unless that is disabled.
    void accessKeys()
    {
        List &list = show();
        list.button.setText(u"&View"_s);
        list.list.setFocus();
        for (const int times : {1, 2, 3}) {
            m_main->menuBar()->actions().constFirst()->setEnabled(times != 2);
            type(Qt::Key_V, Qt::AltModifier);
            QTRY_COMPARE(eventLog.size(), times);
            m_main->resize(700 + 50 * times, 600); // QMenuBar registers its keys again
            QCoreApplication::processEvents();
        }
        QVERIFY(list.list.hasFocus());
        list.button.setEnabled(false);
        type(Qt::Key_V, Qt::AltModifier);
        QTRY_VERIFY(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
        QCOMPARE(eventLog.size(), 3);
    }

    void loadErrors_data()
    {
        QTest::addColumn<QString>("handler");
        for (const char *handler : {"Form_Load", "openDataSources"})
            QTest::newRow(handler) << QString::fromLatin1(handler);
    }

    // The error names the window that cannot be loaded, not the one that opens it. The window is
    // not loaded then, and can be loaded later.
    void loadErrors()
    {
        QFETCH(const QString, handler);
        failIn(handler, [this] {
            QVERIFY(!m_main->frame.boundary().run(u"opener"_s, [this] {
                m_main->open<List>();
                QFAIL("the handler continued");
            }));
        });
        QVERIFY(!m_main->frame.find<List>() && !m_main->frame.activeChild());
        show();
        QVERIFY(m_main->frame.find<List>());
    }

    // The user sees the error, and the window remains usable.
    void handlerErrors()
    {
        List &list = show();
        failIn(u"press"_s, [&] { list.button.click(); });
        failIn(u"Form_Deactivate"_s, [&] { m_main->frame.hide(list); });
        QVERIFY(!list.isVisible());
        failIn(u"Form_Activate"_s, [&] { m_main->frame.show(list); });
        list.button.click();
        QCOMPARE(eventLog.constLast(), u"List!"_s);
    }

    void titles_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("marks of a modified document") << u"Soup [*] of [*][*] the day [*"_s;
        QTest::newRow("rich text") << u"<b>Soup</b> &amp; \"bread\""_s;
    }

    // A QWidget replaces the marks in the title of its native window; a second window with the same
    // windowTitle shows what the user sees.
    void titles()
    {
        QFETCH(const QString, title);
        List &list = show();
        QWidget *subWindow = list.parentWidget();
        list.setTitle(title);
        QCOMPARE(list.title(), title);
        QWidget shown;
        shown.setWindowTitle(subWindow->windowTitle());
        shown.show();
        QVERIFY(shown.windowHandle()->title().startsWith(title));

        QHelpEvent help(QEvent::ToolTip, {100, 8}, subWindow->mapToGlobal(QPoint(100, 8)));
        QApplication::sendEvent(subWindow, &help);
        QCOMPARE(QToolTip::text(), u"<qt>%1</qt>"_s.arg(title.toHtmlEscaped()));
        QToolTip::hideText();
    }

    // A new window is inside the area, further down than the last one, and remains inside when the
    // area shrinks.
    void places()
    {
        const auto isInside = [this](const QWidget &subWindow) {
            return m_main->area.viewport()->rect().contains(subWindow.geometry());
        };
        QWidget &subWindow = *show().parentWidget();
        auto &other = m_main->frame.load<Record>();
        m_main->frame.show(other);
        QWidget &otherSubWindow = *other.parentWidget();
        QVERIFY(isInside(subWindow) && isInside(otherSubWindow)
                && otherSubWindow.x() > subWindow.x());

        // The user may move a part of it outside; it moves back only when the area is resized.
        subWindow.move(m_main->area.viewport()->rect().bottomRight() - QPoint(50, 50));
        show();
        QVERIFY(!isInside(subWindow));
        m_main->resize(500, 560);
        QTRY_VERIFY(isInside(subWindow) && isInside(otherSubWindow));
        m_main->resize(250, 300); // smaller than the minimum size of a window
        auto &late = m_main->frame.load<Tools>();
        m_main->frame.show(late);
        QTRY_VERIFY(isInside(*late.parentWidget()));
    }

    void tellsOfFailures_data()
    {
        const auto load = [](const std::function<void()> &act) {
            try {
                act();
            } catch (const std::exception &failure) {
                throw LoadError(u"Inner"_s, failure);
            }
        };
        const Act allocate = [] { throw std::bad_alloc(); };
        const Act loadInner = [=] { load(allocate); };
        const QString text = u"Something went wrong in \"%1\":\nThere is not enough memory. Close "
                             "other windows and programs and try again."_s;
        addRows<Act, QString>({{"out of memory", allocate, text.arg(u"Outer"_s)},
                               {"in a window it loads", loadInner, text.arg(u"Inner"_s)},
                               {"in two windows", [=] { load(loadInner); }, text.arg(u"Inner"_s)}});
    }

    // What follows a handler comes after the outermost one, be the error reported or handled.
    void tellsOfFailures()
    {
        const auto [act, text] = fetchRow<Act, QString>();
        ErrorBoundary boundary(m_main->interaction);
        boundary.setAfterHandler([] { eventLog += u"after"_s; });
        const auto runNested = [&, &act = act] {
            eventLog.clear();
            boundary.run(u"Outermost"_s, [&] {
                boundary.run(u"Outer"_s, act);
                eventLog += u"outermost"_s;
            });
            QCOMPARE(eventLog.join(u' '), u"outermost after"_s);
        };
        m_main->interaction.expect({text, u"Error"_s, Icon::Exclamation});
        runNested();
        QString handled;
        boundary.setErrorHandler([&](const QString &windowTitle, const std::exception_ptr &) {
            handled = windowTitle;
            return true;
        });
        runNested();
        QVERIFY(text.contains(u'"' + handled + u'"'));
    }

    void reopened_data()
    {
        QTest::addColumn<bool>("maximised");
        QTest::addColumn<bool>("beforeAnother");
        QTest::newRow("as it was") << false << false;
        QTest::newRow("maximised") << true << false;
        QTest::newRow("maximised, before another window") << true << true;
    }

    // A window that is opened again is where it was, within the area, which may have become
    // smaller.
    void reopened()
    {
        QFETCH(const bool, maximised);
        QFETCH(const bool, beforeAnother);
        const QRect place(310, 205, 420, 390);
        if (beforeAnother)
            m_main->frame.show(m_main->frame.load<Record>());
        List &first = show();
        first.parentWidget()->setGeometry(place);
        if (maximised)
            first.parentWidget()->showMaximized();
        m_main->frame.unload(first);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        QWidget *subWindow = show().parentWidget();
        QCOMPARE(subWindow->isMaximized(), beforeAnother);
        subWindow->showNormal();
        QCOMPARE(subWindow->geometry(), place);
        m_main->frame.unload(*m_main->frame.find<List>());
        m_main->resize(600, 500);
        QCoreApplication::processEvents();
        QCOMPARE(show().parentWidget()->size(), place.size());
        QVERIFY(m_main->area.viewport()->rect().contains(
            m_main->frame.find<List>()->parentWidget()->geometry()));
    }
};

QTEST_MAIN(tst_ChildWindow)
#include "tst_childwindow.moc"
