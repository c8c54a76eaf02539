#include "support/TestWindows.h"

#include <QApplication>
#include <QDialog>
#include <QMdiSubWindow>
#include <QProcess>
#include <QScrollBar>
#include <QStyleOptionTitleBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

void xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(u"xdotool"_s, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("xdotool %s failed", qUtf8Printable(arguments.join(u' ')));
}

QStringList mouseTo(QPoint position)
{
    return {u"mousemove"_s, QString::number(position.x()), QString::number(position.y())};
}

void click(QPoint position, int times = 1)
{
    xdotool(mouseTo(position) + u"click --delay 20 --repeat"_s.split(u' ')
            + QStringList{QString::number(times), u"1"_s});
}

QPoint middle(const QWidget &widget)
{
    return widget.mapToGlobal(widget.rect().center());
}

// Where a child window's title bar has one of its parts.
QPoint onTitleBar(const QWidget &child, QStyle::SubControl part)
{
    const QWidget *shell = child.parentWidget();
    const QStyle &style = *shell->style();
    QStyleOptionTitleBar option;
    option.initFrom(shell);
    option.subControls = QStyle::SC_All;
    option.titleBarFlags = shell->windowFlags();
    option.titleBarState = static_cast<int>(shell->windowState());
    option.rect.setHeight(style.pixelMetric(QStyle::PM_TitleBarHeight, &option, shell));
    const QRect rect = style.subControlRect(QStyle::CC_TitleBar, &option, part, shell);
    return shell->mapToGlobal(rect.center());
}

} // namespace

// With the user's keys and mouse, on an X server.
class tst_Activation : public QObject
{
    Q_OBJECT

    std::unique_ptr<MainWindow> m_main;

    // When this returns the program has seen everything that the hands have done: the mouse has
    // come to a place where it was not before. What was queued meanwhile has run.
    void waitUntilIdle() const
    {
        QLabel *from = &m_main->resting;
        QLabel *to = &m_main->otherResting;
        if (to->underMouse())
            std::swap(from, to);
        xdotool(mouseTo(middle(*from)) + mouseTo(middle(*to)));
        QTRY_VERIFY(to->underMouse());
        QCoreApplication::processEvents();
    }

    TestWindow *stand(const QString &name) const
    {
        return static_cast<TestWindow *>(m_main->frame.find(name.toLatin1()));
    }

    void perform(const QString &step) const
    {
        static const QHash<QString, QStyle::SubControl> parts{
            {u"title"_s, QStyle::SC_TitleBarLabel},
            {u"close"_s, QStyle::SC_TitleBarCloseButton},
            {u"minimise"_s, QStyle::SC_TitleBarMinButton},
            {u"maximise"_s, QStyle::SC_TitleBarMaxButton}};
        const QString verb = step.section(u' ', 0, 0);
        const QString object = step.section(u' ', 1);
        if (verb == u"type"_s)
            xdotool(QStringList(u"key"_s) + object.split(u' ')); // in one burst
        else if (verb == u"press"_s)
            click(middle(stand(object)->button));
        else if (verb == u"widgetpress"_s) // as tests of windows do, past the native window
            QTest::mouseClick(&stand(object)->button, Qt::LeftButton);
        else if (verb == u"double"_s)
            click(middle(stand(object)->list), 2);
        else
            click(onTitleBar(*stand(object), parts.value(verb)));
        waitUntilIdle();
    }

private Q_SLOTS:
    void init()
    {
        m_main = std::make_unique<MainWindow>();
        waitUntilIdle();
        eventLog.clear();
    }

    void cleanup() { m_main.reset(); }

    void user()
    {
        using Steps = QList<QStringList>; // what the user does, and what happens then
        const Steps composing = {{u"type F8"_s, u"Record+"_s},
                                 {u"type F9"_s, u"Record>Editor Editor+"_s},
                                 {u"type F6"_s, u"Editor>Plants Plants+"_s}};
        const QString back = u"Editor+ Editor>Plants * Plants+"_s;
        const Steps rows[] = {
            // A window that lets go: both handlers come before the press.
            {{u"type F5"_s, u"List+"_s},
             {u"type F5"_s, u""_s},
             {u"press List"_s, u"List!"_s},
             {u"type F8"_s, u"List>Record Record+"_s},
             {u"press List"_s, u"Record>List List+ List!"_s},
             {u"title Record"_s, u"List>Record Record+"_s},
             {u"double List"_s, u"Record>List List+"_s},
             {u"type ctrl+Tab"_s, u"List>Record Record+"_s},
             {u"close List"_s, u"Record>List List+ List>Record Record+"_s}},
            // Two that hold, in one burst, then slowly.
            {{u"type F6 F7"_s, u"Plants+ Plants>Tools * Plants+"_s},
             {u"type F7"_s, u"Plants>Tools * Plants+"_s},
             {u"press Tools"_s, u"Plants>Tools * Plants+"_s},
             {u"type Escape"_s, u"Plants>Tools Tools+"_s},
             {u"type Escape"_s, u"Tools>"_s}},
            // A window opened from one that holds, in one burst with its Done.
            {{u"type F6 F5 Escape"_s, u"Plants+ Plants>List * Plants+ Plants>List List+"_s}},
            composing
                + Steps{{u"press Record"_s, u"Plants>Record "_s + back},
                        {u"double Record"_s, u"Plants>Record %1 Plants>Record %1"_s.arg(back)},
                        {u"close Record"_s, u"Plants>Record "_s + back},
                        {u"widgetpress Record"_s, u"Plants>Record "_s + back},
                        {u"press Plants"_s, u"Plants!"_s},
                        {u"type ctrl+Tab"_s, u"Plants>Record "_s + back}},
            // Done leads back, whatever was tried.
            composing
                + Steps{{u"type F5"_s, u"Plants>List "_s + back},
                        {u"type Escape"_s, u"Plants>Editor Editor+"_s},
                        {u"type F5"_s, u"Editor>List * Editor+"_s},
                        {u"press Record"_s, u"Editor>Record * Editor+"_s},
                        {u"type F6"_s, u"Editor>Plants Plants+"_s},
                        {u"close Plants"_s, u"Plants>Editor Editor+"_s},
                        {u"type ctrl+w"_s, u"Editor>Record Record+"_s},
                        {u"type Escape"_s, u"Record>List List+"_s}},
            composing
                + Steps{{u"minimise Plants"_s, u""_s},
                        {u"press Record"_s, u"Plants>Record "_s + back},
                        {u"type F6"_s, u""_s},
                        {u"maximise Plants"_s, u""_s},
                        {u"type F8"_s, u"Plants>Record "_s + back},
                        {u"type Escape"_s, u"Plants>Editor Editor+"_s}}};
        for (const Steps &steps : rows) {
            init();
            for (const QStringList &step : steps) {
                perform(step[0]);
                const QString seen = std::exchange(eventLog, {}).join(u' ');
                QVERIFY2(seen == step[1],
                         qPrintable(u"%1: \"%2\", not \"%3\""_s.arg(step[0], seen, step[1])));
                const auto *active = m_main->frame.activeChild();
                QVERIFY(!active || !active->isVisible()
                        || active->isAncestorOf(QApplication::focusWidget()));
            }
        }
    }

    // The wheel turns what lies under the mouse, without an activation, unless a window holds it.
    void wheel()
    {
        for (const auto &[keys, scrolls] :
             {std::pair(u"type F5 F8"_s, true), {u"type F6"_s, false}}) {
            perform(keys);
            eventLog.clear();
            QScrollBar &bar = *stand(u"List"_s)->list.verticalScrollBar();
            bar.setValue(0);
            const QPoint place = middle(stand(u"List"_s)->list);
            QWheelEvent event(m_main->windowHandle()->mapFromGlobal(place), place, {}, {0, -120},
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(m_main->windowHandle(), &event);
            QCOMPARE(bar.value() > 0, scrolls);
            QCOMPARE(eventLog, QStringList());
        }
    }

    // What one handler does is seen by the activations after it.
    void oneHandler()
    {
        Frame &frame = m_main->frame;
        m_main->open<Record>();
        frame.activate(frame.load<Record>());
        frame.load<Record>().key = 7;
        QCOMPARE(eventLog, QStringList());
        QTRY_COMPARE(eventLog, QStringList{u"Record+7"_s});
        eventLog.clear();

        // Of several only the last has its turn, and none that is hidden before it.
        m_main->open<Tools>();
        frame.hide(frame.load<Tools>());
        m_main->open<List>();
        m_main->open<Editor>();
        QTRY_COMPARE(eventLog.join(u' '), u"Record>Editor Editor+"_s);
        eventLog.clear();

        frame.unload(frame.load<Editor>());
        QVERIFY(!frame.find<Editor>());
        QVERIFY(!frame.load<Editor>().isVisible());
        QTRY_COMPARE(eventLog.join(u' '), u"Editor>Record Record+7"_s);
        frame.unload(frame.load<Record>());
        const auto *list = frame.find<List>();
        QCOMPARE(m_main->area.activeSubWindow()->widget(), list);
        list->parentWidget()->showMinimized();
        m_main->open<List>();
        QVERIFY(list->isVisible() && list->isAncestorOf(QApplication::focusWidget()));
    }

    void modalWindows()
    {
        perform(u"type F6"_s);
        eventLog.clear();
        QDialog box(m_main.get());
        QTimer::singleShot(0, &box, [&] {
            m_main->open<List>();
            QVERIFY(QTest::qWaitForWindowActive(&box));
            QTest::keyClick(&box, Qt::Key_F7);
            QCoreApplication::processEvents();
            QCOMPARE(eventLog, QStringList());
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        box.exec();
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
        waitUntilIdle();
        QCOMPARE(eventLog.join(u' '), u"Plants>List * Plants+"_s);
    }

    void otherPrograms()
    {
        perform(u"type F5 F8 F6"_s);
        eventLog.clear();
        m_main->showMinimized();
        QTRY_VERIFY(!m_main->isActiveWindow());
        m_main->showNormal();
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
        waitUntilIdle();
        QCOMPARE(eventLog, QStringList());
        QCOMPARE(m_main->frame.activeChild(), stand(u"Plants"_s));
    }

    void unloadAll()
    {
        perform(u"type F5 F6"_s);
        eventLog.clear();
        m_main->open<Record>();
        m_main->frame.unloadAll();
        waitUntilIdle();
        QCOMPARE(eventLog, QStringList());
    }
};

QTEST_MAIN(tst_Activation)
#include "tst_activation.moc"
