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

// Returns the centre of a part of the title bar.
QPoint onTitleBar(const QWidget &child, QStyle::SubControl part)
{
    const QWidget *subWindow = child.parentWidget();
    const QStyle &style = *subWindow->style();
    QStyleOptionTitleBar option;
    option.initFrom(subWindow);
    option.subControls = QStyle::SC_All;
    option.titleBarFlags = subWindow->windowFlags();
    option.titleBarState = static_cast<int>(subWindow->windowState());
    option.rect.setHeight(style.pixelMetric(QStyle::PM_TitleBarHeight, &option, subWindow));
    const QRect rect = style.subControlRect(QStyle::CC_TitleBar, &option, part, subWindow);
    return subWindow->mapToGlobal(rect.center());
}

} // namespace

// Tests with real key presses and mouse clicks on an X server.
class tst_Activation : public QObject
{
    Q_OBJECT

    using Steps = QList<QStringList>; // each with what the user does and the expected event log

    std::unique_ptr<MainWindow> m_main;

    // Waits until all input has arrived and all queued calls have run: moves the mouse to the other
    // of two labels, since that event comes after all others.
    void waitUntilIdle() const
    {
        QLabel *from = &m_main->leftLabel;
        QLabel *to = &m_main->rightLabel;
        if (to->underMouse())
            std::swap(from, to);
        xdotool(mouseTo(middle(*from)) + mouseTo(middle(*to)));
        QTRY_VERIFY(to->underMouse());
        QCoreApplication::processEvents();
    }

    // Returns which control of which child has the focus: "List.done".
    static QString focused()
    {
        const QWidget *focus = QApplication::focusWidget();
        const QWidget *child = focus;
        while (child && !qobject_cast<const ChildWindow *>(child))
            child = child->parentWidget();
        return child
            ? QLatin1StringView(child->metaObject()->className()) + u'.' + focus->objectName()
            : QString();
    }

    TestWindow *window(const QString &name) const
    {
        return static_cast<TestWindow *>(m_main->frame.find(name.toLatin1()));
    }

    void perform(const QString &step) const
    {
        static const QHash<QString, QStyle::SubControl> parts{
            {u"title"_s, QStyle::SC_TitleBarLabel},
            {u"close"_s, QStyle::SC_TitleBarCloseButton},
            {u"restore"_s, QStyle::SC_TitleBarNormalButton},
            {u"minimise"_s, QStyle::SC_TitleBarMinButton},
            {u"maximise"_s, QStyle::SC_TitleBarMaxButton}};
        const QString verb = step.section(u' ', 0, 0);
        const QString object = step.section(u' ', 1);
        if (verb == u"type"_s)
            xdotool(QStringList(u"key"_s) + object.split(u' ')); // in one burst
        else if (verb == u"press"_s)
            click(middle(window(object)->button));
        else if (verb == u"widgetpress"_s) // delivered to the widget, not to the QWindow
            QTest::mouseClick(&window(object)->button, Qt::LeftButton);
        else if (verb == u"double"_s)
            click(middle(window(object)->list), 2);
        else if (verb == u"disable"_s)
            window(object)->done.setEnabled(false);
        else if (verb == u"normal"_s) // a maximised window has its title bar in the menu bar
            window(object)->parentWidget()->showNormal();
        else if (verb == u"focus"_s) // as a screen reader moves it
            window(object)->list.setFocus();
        else
            click(onTitleBar(*window(object), parts.value(verb)));
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

    void input_data()
    {
        QTest::addColumn<Steps>("steps");
        const Steps composing = {{u"type F8"_s, u"Record+"_s},
                                 {u"type F9"_s, u"Record>Editor Editor+"_s},
                                 {u"type F6"_s, u"Editor>Plants Plants+"_s}};
        const QString back = u"Editor+ Editor>Plants * Plants+"_s;
        QTest::newRow("both handlers run before the press")
            << Steps{{u"type F5"_s, u"List+"_s},
                     {u"type F5"_s, u""_s},
                     {u"press List"_s, u"List!"_s},
                     {u"type F8"_s, u"List>Record Record+"_s},
                     {u"press List"_s, u"Record>List List+ List!"_s},
                     {u"title Record"_s, u"List>Record Record+"_s},
                     {u"double List"_s, u"Record>List List+"_s},
                     {u"type ctrl+Tab"_s, u"List>Record Record+"_s},
                     {u"close List"_s, u"Record>List List+ List>Record Record+"_s}};
        QTest::newRow("two windows that keep the activation")
            << Steps{{u"type F6 F7"_s, u"Plants+ Plants>Tools * Plants+"_s},
                     {u"type F7"_s, u"Plants>Tools * Plants+"_s},
                     {u"press Tools"_s, u"Plants>Tools * Plants+"_s},
                     {u"type Escape"_s, u"Plants>Tools Tools+"_s},
                     {u"type Escape"_s, u"Tools>"_s}};
        QTest::newRow("a burst of keys that ends with Done") << Steps{
            {u"type F6 F5 Escape"_s, u"Plants+ Plants>List * Plants+ Plants>List List+"_s}};
        QTest::newRow("a refused press") << composing
                + Steps{{u"press Record"_s, u"Plants>Record "_s + back},
                        {u"double Record"_s, u"Plants>Record %1 Plants>Record %1"_s.arg(back)},
                        {u"close Record"_s, u"Plants>Record "_s + back},
                        {u"widgetpress Record"_s, u"Plants>Record "_s + back},
                        {u"press Plants"_s, u"Plants!"_s},
                        {u"type ctrl+Tab"_s, u"Plants>Record "_s + back}};
        QTest::newRow("Done leads back after refused windows")
            << composing + Steps{{u"type F5"_s, u"Plants>List "_s + back},
                                 {u"type Escape"_s, u"Plants>Editor Editor+"_s},
                                 {u"type F5"_s, u"Editor>List * Editor+"_s},
                                 {u"press Record"_s, u"Editor>Record * Editor+"_s},
                                 {u"type F6"_s, u"Editor>Plants Plants+"_s},
                                 {u"close Plants"_s, u"Plants>Editor Editor+"_s},
                                 {u"type ctrl+w"_s, u"Editor>Record Record+"_s},
                                 {u"type Escape"_s, u"Record>List List+"_s}};
        QTest::newRow("minimised and maximised") << composing
                + Steps{{u"minimise Plants"_s, u""_s},
                        {u"press Record"_s, u"Plants>Record "_s + back},
                        {u"type F6"_s, u""_s},
                        {u"maximise Plants"_s, u""_s},
                        {u"type F8"_s, u"Plants>Record "_s + back},
                        {u"type Escape"_s, u"Plants>Editor Editor+"_s}};
        QTest::newRow("a minimised window that takes the activation back is restored")
            << Steps{{u"type F6"_s, u"Plants+"_s},
                     {u"minimise Plants"_s, u""_s},
                     {u"type F5"_s, u"Plants>List * Plants+"_s},
                     {u"press Plants"_s, u"Plants!"_s}};
        QTest::newRow("an access key presses before the next key")
            << Steps{{u"type F5"_s, u"List+"_s},
                     {u"type alt+p F8"_s, u"List! List>Record Record+"_s},
                     {u"type alt+p ctrl+w"_s, u"Record! Record>List List+"_s},
                     {u"type alt+o F8"_s, u"List> Record+"_s}};
        QTest::newRow("Ctrl+W presses the button that leaves the window")
            << Steps{{u"type F5 F8"_s, u"List+ List>Record Record+"_s},
                     {u"disable Record"_s, u""_s},
                     {u"type ctrl+w"_s, u""_s},
                     {u"type alt+p"_s, u"Record!"_s},
                     {u"type F5 ctrl+w"_s, u"Record>List List+ List>Record Record+"_s}};
    }

    void input()
    {
        QFETCH(const Steps, steps);
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

    void focus_data()
    {
        QTest::addColumn<Steps>("steps"); // what the user does, and what has the focus then
        const Steps open = {{u"type F5 Tab"_s, u"List.list"_s},
                            {u"type F8 Tab Tab Tab"_s, u"Record.done"_s}};
        const Steps maximised = open + Steps{{u"maximise Record"_s, u"Record.done"_s}};
        const Steps switches = {
            {u"type F5"_s, u"List.list"_s},           {u"type F8"_s, u"Record.done"_s},
            {u"type ctrl+Tab"_s, u"List.list"_s},     {u"type ctrl+Tab"_s, u"Record.done"_s},
            {u"type alt+v Return"_s, u"List.list"_s}, {u"type F8"_s, u"Record.done"_s},
            {u"type F6"_s, u"Plants.button"_s},       {u"type F8"_s, u"Plants.button"_s},
            {u"type Escape"_s, u"Record.done"_s},     {u"type Escape"_s, u"List.list"_s}};
        const Steps screenReader = {{u"focus List"_s, u"List.list"_s},
                                    {u"type shift+Tab"_s, u"List.button"_s},
                                    {u"focus Record"_s, u"Record.list"_s},
                                    {u"type F5"_s, u"List.button"_s},
                                    {u"type F8"_s, u"Record.list"_s}};
        const Steps disabled = {{u"type F5"_s, u"List.list"_s},
                                {u"disable Record"_s, u"List.list"_s},
                                {u"type F8"_s, u"Record.button"_s}};
        QTest::newRow("side by side") << open + switches;
        QTest::newRow("maximised") << maximised + switches;
        QTest::newRow("maximised and restored")
            << maximised + Steps{{u"normal Record"_s, u"Record.done"_s}} + switches;
        QTest::newRow("its control is disabled in between") << open + disabled;
        QTest::newRow("its control is disabled in between, maximised") << maximised + disabled;
        QTest::newRow("Tab at the last control") << open
                + Steps{{u"type Tab"_s, u"Record.button"_s},
                        {u"type shift+Tab"_s, u"Record.done"_s}};
        QTest::newRow("screen reader") << open + screenReader;
        QTest::newRow("mouse") << open
                + Steps{{u"title List"_s, u"List.list"_s},
                        {u"title Record"_s, u"Record.done"_s},
                        {u"press List"_s, u"List.button"_s},
                        {u"title Record"_s, u"Record.done"_s},
                        {u"type F5"_s, u"List.button"_s}};
        QTest::newRow("minimised") << open
                + Steps{{u"minimise Record"_s, u""_s},    {u"type F5"_s, u"List.list"_s},
                        {u"type F8"_s, u"Record.done"_s}, {u"minimise Record"_s, u""_s},
                        {u"type F5"_s, u"List.list"_s},   {u"restore Record"_s, u"Record.done"_s}};
    }

    // A window has the focus where it had it last, however it becomes active.
    void focus()
    {
        QFETCH(const Steps, steps);
        for (const QStringList &step : steps) {
            perform(step[0]);
            QVERIFY2(focused() == step[1],
                     qPrintable(u"%1: \"%2\", not \"%3\""_s.arg(step[0], focused(), step[1])));
        }
    }

    void formActivateMovesTheFocus()
    {
        perform(u"type F5 F8"_s);
        window(u"List"_s)->focusesList = true;
        perform(u"type F5"_s);
        QCOMPARE(focused(), u"List.list"_s);
    }

    void held_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("events");
        QTest::addColumn<bool>("repeats");
        QTest::newRow("access key") << u"alt p"_s << u"List!"_s << false;
        QTest::newRow("access key of a button that repeats") << u"alt t"_s << u"List/"_s << true;
        QTest::newRow("Enter") << u"Return"_s << u"List!"_s << false;
        QTest::newRow("Ctrl+W") << u"ctrl w"_s << u"Record>List List+"_s << false;
    }

    // A held key presses once, unless the window says that the button repeats.
    void held()
    {
        QFETCH(const QString, keys);
        QFETCH(const bool, repeats);
        perform(keys == u"ctrl w"_s ? u"type F5 F8"_s : u"type F5 Tab"_s);
        eventLog.clear();
        QStringList arguments;
        for (const QString &key : keys.split(u' '))
            arguments += {u"keydown"_s, key};
        arguments += {u"sleep"_s, u"1.2"_s};
        for (const QString &key : keys.split(u' '))
            arguments += {u"keyup"_s, key};
        QProcess process; // events must be handled while it runs
        process.start(u"xdotool"_s, arguments);
        QTRY_COMPARE(process.state(), QProcess::NotRunning);
        waitUntilIdle();
        if (repeats) {
            QCOMPARE_GT(eventLog.size(), 2);
            eventLog.resize(1);
        }
        QTEST(eventLog.join(u' '), "events");
    }

    void wheel_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<bool>("scrolls");
        QTest::newRow("another window that may be activated") << u"type F5 F8"_s << true;
        QTest::newRow("another window that may not") << u"type F5 F6"_s << false;
    }

    // The wheel turns what is under the mouse without activating it, unless the active window keeps
    // the activation.
    void wheel()
    {
        QFETCH(const QString, keys);
        perform(keys);
        eventLog.clear();
        const QListWidget &list = window(u"List"_s)->list;
        const QPoint place = middle(list);
        QWheelEvent event(m_main->windowHandle()->mapFromGlobal(place), place, {}, {0, -120},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_main->windowHandle(), &event);
        QTEST(list.verticalScrollBar()->value() > 0, "scrolls");
        QCOMPARE(eventLog, QStringList());
    }

    // The activations run after the handler and see what it has done.
    void oneHandler()
    {
        Frame &frame = m_main->frame;
        m_main->open<Record>();
        frame.activate(frame.load<Record>());
        frame.load<Record>().key = 7;
        QCOMPARE(eventLog, QStringList());
        QTRY_COMPARE(eventLog, QStringList{u"Record+7"_s});
        eventLog.clear();

        // Of several windows shown in one handler only the last is activated.
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
        QCOMPARE(m_main->frame.activeChild(), window(u"Plants"_s));
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
