#include "Hands.h"
#include "Stands.h"

#include <QApplication>
#include <QDialog>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

using Steps = QList<QStringList>; // what the user does, and what happens then

} // namespace

Q_DECLARE_METATYPE(Steps)

class tst_Activation : public QObject
{
    Q_OBJECT

    std::unique_ptr<MainWindow> m_main;

    // When this returns the program has seen everything that the hands have done, which may take a
    // while where they are real: the mouse has come to a place where it was not before. What was
    // queued meanwhile has run.
    void rest() const
    {
        if (Hands::areReal()) {
            QLabel *from = &m_main->resting;
            QLabel *to = &m_main->otherResting;
            if (to->underMouse())
                std::swap(from, to);
            Hands(*m_main).move(middle(*from));
            Hands(*m_main).move(middle(*to));
            QTRY_VERIFY(to->underMouse());
        }
        QCoreApplication::processEvents();
    }

    Stand *stand(const QString &name) const
    {
        return static_cast<Stand *>(m_main->frame.find(name.toLatin1()));
    }

    static QPoint middle(const QWidget &widget)
    {
        return widget.mapToGlobal(widget.rect().center());
    }

    void perform(const QString &step) const
    {
        static const QHash<QString, QStyle::SubControl> parts{
            {u"title"_s, QStyle::SC_TitleBarLabel},
            {u"close"_s, QStyle::SC_TitleBarCloseButton},
            {u"minimise"_s, QStyle::SC_TitleBarMinButton},
            {u"maximise"_s, QStyle::SC_TitleBarMaxButton}};
        const Hands hands(*m_main);
        const QString verb = step.section(u' ', 0, 0);
        const QString object = step.section(u' ', 1);
        if (verb == u"type"_s)
            hands.type(object.split(u' '));
        else if (verb == u"press"_s)
            hands.click(middle(stand(object)->button));
        else if (verb == u"widgetpress"_s) // as tests of windows do, past the native window
            QTest::mouseClick(&stand(object)->button, Qt::LeftButton);
        else if (verb == u"double"_s)
            hands.click(middle(stand(object)->list), 2);
        else if (verb == u"wheel"_s)
            hands.wheelDown(middle(stand(object)->list));
        else
            hands.click(onTitleBar(*stand(object), parts.value(verb)));
        rest();
    }

private Q_SLOTS:
    void init()
    {
        m_main = std::make_unique<MainWindow>();
        rest();
        happened.clear();
    }

    void cleanup() { m_main.reset(); }

    void user_data()
    {
        QTest::addColumn<Steps>("steps");
        const Steps composing = {{u"type F8"_s, u"Record+"_s},
                                 {u"type F9"_s, u"Record>Editor Editor+"_s},
                                 {u"type F6"_s, u"Editor>Plants Plants+"_s}};
        const QString back = u"Editor+ Editor>Plants * Plants+"_s;

        QTest::newRow("a window that lets go: both handlers before the press")
            << Steps{{u"type F5"_s, u"List+"_s},
                     {u"type F5"_s, u""_s},
                     {u"press List"_s, u"List!"_s},
                     {u"type F8"_s, u"List>Record Record+"_s},
                     {u"press List"_s, u"Record>List List+ List!"_s},
                     {u"title Record"_s, u"List>Record Record+"_s},
                     {u"double List"_s, u"Record>List List+"_s},
                     {u"type ctrl+Tab"_s, u"List>Record Record+"_s},
                     {u"close List"_s, u"Record>List List+ List>Record Record+"_s}};
        QTest::newRow("two that hold, in one burst, then slowly")
            << Steps{{u"type F6 F7"_s, u"Plants+ Plants>Tools * Plants+"_s},
                     {u"type F7"_s, u"Plants>Tools * Plants+"_s},
                     {u"press Tools"_s, u"Plants>Tools * Plants+"_s},
                     {u"type Escape"_s, u"Plants>Tools Tools+"_s},
                     {u"type Escape"_s, u"Tools>"_s}};
        QTest::newRow("a window opened from one that holds, in one burst with its Done") << Steps{
            {u"type F6 F5 Escape"_s, u"Plants+ Plants>List * Plants+ Plants>List List+"_s}};
        QTest::newRow("the mouse in another window") << composing
                + Steps{{u"press Record"_s, u"Plants>Record "_s + back},
                        {u"double Record"_s, u"Plants>Record %1 Plants>Record %1"_s.arg(back)},
                        {u"close Record"_s, u"Plants>Record "_s + back},
                        {u"widgetpress Record"_s, u"Plants>Record "_s + back},
                        {u"press Plants"_s, u"Plants!"_s},
                        {u"type ctrl+Tab"_s, u"Plants>Record "_s + back}};
        QTest::newRow("Done leads back, whatever was tried")
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
    }

    void user()
    {
        QFETCH(const Steps, steps);
        for (const QStringList &step : steps) {
            perform(step[0]);
            const QString seen = happened.join(u' ');
            happened.clear();
            QVERIFY2(seen == step[1],
                     qPrintable(u"%1: \"%2\", not \"%3\""_s.arg(step[0], seen, step[1])));
            const auto *active = static_cast<Stand *>(m_main->frame.activeChild());
            QVERIFY(!active || !active->isVisible()
                    || active->isAncestorOf(QApplication::focusWidget()));
        }
    }

    // The wheel turns what lies under the mouse, without an activation, unless a window holds it.
    void wheel()
    {
        for (const auto &[keys, scrolls] :
             {std::pair(u"type F5 F8"_s, true), {u"type F6"_s, false}}) {
            perform(keys);
            happened.clear();
            QScrollBar &bar = *stand(u"List"_s)->list.verticalScrollBar();
            bar.setValue(0);
            perform(u"wheel List"_s);
            QCOMPARE(bar.value() > 0, scrolls);
            QCOMPARE(happened, QStringList());
        }
    }

    // What one handler does is seen by the activations after it.
    void oneHandler()
    {
        Frame &frame = m_main->frame;
        m_main->open<Record>();
        frame.activate(frame.load<Record>());
        frame.load<Record>().key = 7;
        QCOMPARE(happened, QStringList());
        QTRY_COMPARE(happened, QStringList{u"Record+7"_s});
        happened.clear();

        // Of several only the last has its turn, and none that is hidden before it.
        m_main->open<Tools>();
        frame.hide(frame.load<Tools>());
        m_main->open<List>();
        m_main->open<Editor>();
        QTRY_COMPARE(happened.join(u' '), u"Record>Editor Editor+"_s);
        happened.clear();

        frame.unload(frame.load<Editor>());
        QVERIFY(!frame.find<Editor>());
        QVERIFY(!frame.load<Editor>().isVisible());
        QTRY_COMPARE(happened.join(u' '), u"Editor>Record Record+7"_s);
        frame.unload(frame.load<Record>());
        QCOMPARE(m_main->area.activeSubWindow()->widget(), frame.find<List>());
        rest();
        happened.clear();

        // The only window, hidden and shown again, minimised and shown again.
        auto &list = frame.load<List>();
        frame.hide(list);
        QVERIFY(!frame.activeChild());
        frame.show(list);
        QTRY_COMPARE(happened.join(u' '), u"List> List+"_s);
        list.parentWidget()->showMinimized();
        frame.show(list);
        QVERIFY(list.isVisible());
        QVERIFY(list.isAncestorOf(QApplication::focusWidget()));
    }

    void modalWindows()
    {
        perform(u"type F6"_s);
        for (const QString &expected : {u""_s, u"Plants>List * Plants+"_s}) {
            happened.clear();
            QDialog box(m_main.get());
            QTimer::singleShot(0, &box, [&] {
                if (!expected.isEmpty())
                    m_main->open<List>();
                QVERIFY(QTest::qWaitForWindowActive(&box));
                QTest::keyClick(&box, Qt::Key_F7);
                QCoreApplication::processEvents();
                QCOMPARE(happened, QStringList());
                QTest::keyClick(&box, Qt::Key_Escape);
            });
            box.exec();
            m_main->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
            rest();
            QCOMPARE(happened.join(u' '), expected);
        }
    }

    void otherPrograms()
    {
        perform(u"type F5 F8 F6"_s);
        happened.clear();
        m_main->showMinimized();
        if (Hands::areReal())
            QTRY_VERIFY(!m_main->isActiveWindow());
        m_main->showNormal();
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
        rest();
        QCOMPARE(happened, QStringList());
        QCOMPARE(m_main->frame.activeChild(), stand(u"Plants"_s));
    }

    void frameClosed()
    {
        perform(u"type F5 F6"_s);
        happened.clear();
        m_main->open<Record>();
        const QPointer<Stand> holder = stand(u"Plants"_s);
        QVERIFY(m_main->close());
        QTRY_VERIFY(!holder);
        QCOMPARE(happened, QStringList());
        QVERIFY(!m_main->frame.activeChild());
    }
};

QTEST_MAIN(tst_Activation)
#include "tst_activation.moc"
