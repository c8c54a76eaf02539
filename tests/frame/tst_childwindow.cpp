#include "Stands.h"

#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMdiSubWindow>
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
        happened.clear();
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
        const QStringList pressed{u"List!"_s, u"List!"_s};
        auto *text = new QPlainTextEdit;
        for (QWidget *control : std::initializer_list<QWidget *>{
                 new QListWidget, new QTableWidget(1, 1), new QLineEdit, new QComboBox, text}) {
            List &list = show();
            list.layout()->addWidget(control);
            control->show();
            control->setFocus();
            QVERIFY(control->hasFocus());
            type(Qt::Key_Return);
            type(Qt::Key_Enter);
            QCOMPARE(happened, control == text ? QStringList() : pressed);
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
        QApplication::sendEvent(&list.done, &held);
        QCOMPARE(m_main->frame.find<List>(), &list);
        list.list.setFocus();
        type(Qt::Key_Return, Qt::ControlModifier);
        list.button.setEnabled(false);
        list.done.hide();
        type(Qt::Key_Return);
        type(Qt::Key_Escape);
        QCOMPARE(m_main->frame.find<List>(), &list);
        QCOMPARE(happened, QStringList());
    }

    // Qt shows a window title with its marks resolved: what it makes of ours is the title again.
    void titles()
    {
        List &list = show();
        QWidget *shell = list.parentWidget();
        QCOMPARE(list.title(), u"Stand's 100%1"_s);
        for (const QString &title : {u"Soup [*] of [*][*] the day [*"_s,
                                     u"<b>Soup</b> &amp; \"bread\""_s, QString(600, u'x')}) {
            list.setTitle(title);
            QCOMPARE(list.title(), title);
            QWidget shown;
            shown.setWindowTitle(shell->windowTitle());
            shown.show();
            const QString caption = shown.windowHandle()->title();
            QVERIFY2(caption.startsWith(title), qPrintable(caption));

            QHelpEvent help(QEvent::ToolTip, {100, 8}, shell->mapToGlobal(QPoint(100, 8)));
            QApplication::sendEvent(shell, &help);
            QCOMPARE(QToolTip::text(), u"<qt>%1</qt>"_s.arg(title.toHtmlEscaped()));
            QToolTip::hideText();
        }
    }

    // A new window stands in the frame, below the one before, and comes along when it shrinks.
    void places()
    {
        const QWidget *viewport = m_main->area.viewport();
        const auto isInside = [viewport](const QWidget &shell) {
            return viewport->rect().contains(shell.geometry());
        };
        QWidget &shell = *show().parentWidget();
        QVERIFY(isInside(shell));
        auto &other = m_main->frame.load<Record>();
        m_main->frame.show(other);
        QWidget &otherShell = *other.parentWidget();
        QVERIFY(isInside(otherShell));
        QVERIFY(otherShell.x() > shell.x());

        // The user may move it out in part; it is the frame that takes it along.
        shell.move(viewport->rect().bottomRight() - QPoint(50, 50));
        show();
        QVERIFY(!isInside(shell));
        otherShell.showMaximized();
        m_main->resize(500, 560);
        QTRY_VERIFY(isInside(shell));
        otherShell.showNormal();
        QTRY_VERIFY(isInside(otherShell));

        m_main->resize(250, 300); // smaller than a window likes to be
        auto &late = m_main->frame.load<Tools>();
        m_main->frame.show(late);
        QTRY_VERIFY(isInside(*late.parentWidget()));
    }
};

QTEST_MAIN(tst_ChildWindow)
#include "tst_childwindow.moc"
