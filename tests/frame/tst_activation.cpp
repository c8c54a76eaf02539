#include "Frame.h"
#include "Hands.h"
#include "StrictDoorway.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QStyleOptionTitleBar>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

// What happened, in order: "A+" activated, "A>B" deactivated while B is the active one, "A!" a
// press of its button, "*" the beep.
QStringList happened;

QString nameOf(const ChildWindow *child)
{
    return child ? QString::fromLatin1(child->metaObject()->className()) : QString();
}

// A window with a button and a list; Esc is its Done.
class Stand : public ChildWindow
{
    Q_OBJECT

public:
    explicit Stand(Frame &frame)
        : ChildWindow(frame)
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&button);
        layout->addWidget(&list);
        for (int i = 0; i < 50; ++i)
            list.addItem(QString::number(i));
        connect(&button, &QPushButton::clicked, this, &Stand::press);
        connect(&done, &QPushButton::clicked, this, &Stand::leave);
        layout->addWidget(&done);
        setCancelButton(&done);
        setTitle(u"a title of its own"_s);
    }

    QPushButton button{u"Press"_s};
    QPushButton done{u"Done"_s};
    QListWidget list;
    int key = 0;

protected:
    void Form_Activate() override
    {
        happened += nameOf(this) + u"+"_s + (key ? QString::number(key) : QString());
    }
    void Form_Deactivate() override
    {
        happened += nameOf(this) + u">"_s + nameOf(frame().activeChild());
    }

private:
    void press() { happened += nameOf(this) + u"!"_s; }
    void leave()
    {
        frame().hide(*this);
        frame().unload(*this);
    }
};

class List : public Stand
{
    Q_OBJECT
    using Stand::Stand;
};

class Record : public Stand
{
    Q_OBJECT
    using Stand::Stand;
};

class Editor : public Stand
{
    Q_OBJECT
    using Stand::Stand;
    bool keepsActivationFrom(const ChildWindow &next) const noexcept override
    {
        return next.inherits("Catalog") == false;
    }
};

class Catalog : public Stand
{
    Q_OBJECT
    using Stand::Stand;
    bool keepsActivationFrom(const ChildWindow & /*next*/) const noexcept override { return true; }
    QByteArrayView compositionEditor() const override { return "Editor"; }
};

class Plants : public Catalog
{
    Q_OBJECT
    using Catalog::Catalog;
};

class Tools : public Catalog
{
    Q_OBJECT
    using Catalog::Catalog;
};

// Each activates the other.
class Ping : public Stand
{
    Q_OBJECT
    using Stand::Stand;
    void Form_Activate() override
    {
        Stand::Form_Activate();
        if (ChildWindow *other = frame().find(nameOf(this) == u"Ping"_s ? "Pong" : "Ping"))
            frame().activate(*other);
    }
};

class Pong : public Ping
{
    Q_OBJECT
    using Ping::Ping;
};

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow()
    {
        setCentralWidget(&area);
        QMenu *menu = menuBar()->addMenu(u"&View"_s);
        add(*menu, Qt::Key_F5, &MainWindow::open<List>);
        add(*menu, Qt::Key_F6, &MainWindow::open<Plants>);
        add(*menu, Qt::Key_F7, &MainWindow::open<Tools>);
        add(*menu, Qt::Key_F8, &MainWindow::open<Record>);
        add(*menu, Qt::Key_F9, &MainWindow::open<Editor>);
        statusBar()->addWidget(&resting);
        statusBar()->addPermanentWidget(&otherResting);
        resize(1000, 800);
    }

    // Windows stand side by side, so that the mouse can reach each.
    template <class Window>
    void open()
    {
        static const QHash<QString, QPoint> places = {
            {u"List"_s, {0, 0}},     {u"Record"_s, {330, 0}},  {u"Editor"_s, {660, 0}},
            {u"Plants"_s, {0, 350}}, {u"Tools"_s, {330, 350}}, {u"Ping"_s, {660, 350}}};
        auto &window = frame.load<Window>();
        if (!window.isVisible())
            window.parentWidget()->setGeometry({places.value(nameOf(&window)), QSize(300, 300)});
        frame.show(window);
    }

    StrictDoorway doorway;
    QMdiArea area;
    Frame frame{doorway, area, [] { happened += u"*"_s; }};
    QLabel resting{u"here"_s};
    QLabel otherResting{u"there"_s};

protected:
    void closeEvent(QCloseEvent *event) override
    {
        frame.unloadAll();
        QMainWindow::closeEvent(event);
    }

private:
    void add(QMenu &menu, Qt::Key key, void (MainWindow::*handler)())
    {
        QAction *action = menu.addAction(QKeySequence(key).toString());
        action->setShortcut(key);
        frame.boundary().connect(action, &QAction::triggered, this, handler);
    }
};

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

    QPoint onTitleBar(const QString &name, QStyle::SubControl control) const
    {
        const QWidget *shell = stand(name)->parentWidget();
        QStyleOptionTitleBar option;
        option.initFrom(shell);
        option.subControls = QStyle::SC_All;
        option.titleBarFlags = shell->windowFlags();
        option.titleBarState = static_cast<int>(shell->windowState());
        option.rect.setHeight(
            shell->style()->pixelMetric(QStyle::PM_TitleBarHeight, &option, shell));
        const QRect rect =
            shell->style()->subControlRect(QStyle::CC_TitleBar, &option, control, shell);
        return shell->mapToGlobal(rect.center());
    }

    static QPoint middle(const QWidget &widget)
    {
        return widget.mapToGlobal(widget.rect().center());
    }

    void perform(const QString &step) const
    {
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
        else if (verb == u"title"_s)
            hands.click(onTitleBar(object, QStyle::SC_TitleBarLabel));
        else if (verb == u"close"_s)
            hands.click(onTitleBar(object, QStyle::SC_TitleBarCloseButton));
        else if (verb == u"minimise"_s)
            hands.click(onTitleBar(object, QStyle::SC_TitleBarMinButton));
        else if (verb == u"maximise"_s)
            hands.click(onTitleBar(object, QStyle::SC_TitleBarMaxButton));
        else
            qFatal("no such step: %s", qUtf8Printable(step));
        rest();
    }

private Q_SLOTS:
    void init()
    {
        happened.clear();
        m_main = std::make_unique<MainWindow>();
        m_main->show();
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
        rest();
    }

    void cleanup() { m_main.reset(); }

    void user_data()
    {
        QTest::addColumn<Steps>("steps");
        const Steps composing = {{u"type F8"_s, u"Record+"_s},
                                 {u"type F9"_s, u"Record>Editor Editor+"_s},
                                 {u"type F6"_s, u"Editor>Plants Plants+"_s}};
        const QString back = u"Editor+ Editor>Plants * Plants+"_s;

        QTest::newRow("the same window again") << Steps{
            {u"type F5"_s, u"List+"_s}, {u"type F5"_s, u""_s}, {u"press List"_s, u"List!"_s}};
        QTest::newRow("a window that lets go: both handlers before the press")
            << Steps{{u"type F5 F8"_s, u"List+ List>Record Record+"_s},
                     {u"press List"_s, u"Record>List List+ List!"_s},
                     {u"title Record"_s, u"List>Record Record+"_s},
                     {u"double List"_s, u"Record>List List+"_s},
                     {u"widgetpress Record"_s, u"List>Record Record+ Record!"_s},
                     {u"press List"_s, u"Record>List List+ List!"_s},
                     {u"type ctrl+Tab"_s, u"List>Record Record+"_s},
                     {u"close List"_s, u"Record>List List+ List>Record Record+"_s}};
        QTest::newRow("two that hold, in one burst")
            << Steps{{u"type F6 F7"_s, u"Plants+ Plants>Tools * Plants+"_s},
                     {u"type Escape"_s, u"Plants>Tools Tools+"_s},
                     {u"type Escape"_s, u"Tools>"_s}};
        QTest::newRow("two that hold, slowly")
            << Steps{{u"type F6"_s, u"Plants+"_s},
                     {u"type F7"_s, u"Plants>Tools * Plants+"_s},
                     {u"type F7"_s, u"Plants>Tools * Plants+"_s},
                     {u"press Tools"_s, u"Plants>Tools * Plants+"_s}};
        QTest::newRow("a window opened from one that holds, in one burst with its Done") << Steps{
            {u"type F6 F5 Escape"_s, u"Plants+ Plants>List * Plants+ Plants>List List+"_s}};
        QTest::newRow("the mouse in another window") << composing
                + Steps{{u"press Record"_s, u"Plants>Record "_s + back},
                        {u"double Record"_s, u"Plants>Record %1 Plants>Record %1"_s.arg(back)},
                        {u"title Record"_s, u"Plants>Record "_s + back},
                        {u"close Record"_s, u"Plants>Record "_s + back},
                        {u"minimise Record"_s, u"Plants>Record "_s + back},
                        {u"widgetpress Record"_s, u"Plants>Record "_s + back},
                        {u"press Plants"_s, u"Plants!"_s},
                        {u"type ctrl+Tab"_s, u"Plants>Record "_s + back}};
        QTest::newRow("Done leads back, whatever was tried")
            << composing + Steps{{u"type F5"_s, u"Plants>List "_s + back},
                                 {u"type F8"_s, u"Plants>Record "_s + back},
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
                        {u"type Escape"_s, u"Plants>Editor Editor+"_s},
                        {u"type Escape"_s, u"Editor>Record Record+"_s}};
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

        auto *editor = &frame.load<Editor>();
        QCOMPARE(&frame.load<Editor>(), editor);
        frame.unload(*editor);
        QVERIFY(!frame.find<Editor>());
        QVERIFY(&frame.load<Editor>() != editor);
        QVERIFY(!frame.load<Editor>().isVisible());
        QTRY_COMPARE(happened.join(u' '), u"Editor>Record Record+7"_s);
        happened.clear();
        frame.unload(frame.load<Record>());
        QTRY_COMPARE(happened.join(u' '), u"Record>List List+"_s);
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
        {
            QWidget other;
            other.show();
            other.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&other));
        }
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
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

    void windowsThatActivateEachOther()
    {
        m_main->open<Ping>();
        m_main->open<Pong>();
        QTRY_VERIFY(happened.contains(u"Pong>Ping"_s));
        perform(u"type F5"_s);
        QCOMPARE(happened.last(), u"List+"_s);
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
