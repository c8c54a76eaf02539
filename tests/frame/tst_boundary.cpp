#include "Frame.h"
#include "StrictDoorway.h"

#include <QMdiArea>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Fails wherever it is told to.
class Fragile : public ChildWindow
{
    Q_OBJECT

public:
    explicit Fragile(Frame &frame)
        : ChildWindow(frame)
    {
        setTitle(u"Frail 100%1"_s);
        connect(&button, &QPushButton::clicked, this, &Fragile::cmdFail_Click);
        connect(&button, &QPushButton::toggled, this, &Fragile::cmdFail_Toggled);
    }

    static inline QString failing;
    QPushButton button;
    QStringList done;

private:
    void pass(const QString &handler)
    {
        if (failing == handler)
            throw std::runtime_error("Table \xE2\x80\x9CRezepte\xE2\x80\x9D is gone: "
                                     + handler.toStdString());
        done += handler;
    }
    void Form_Load() override { pass(u"Form_Load"_s); }
    void openDataSources() override { pass(u"openDataSources"_s); }
    void Form_Activate() override { pass(u"Form_Activate"_s); }
    void Form_Deactivate() override { pass(u"Form_Deactivate"_s); }
    void cmdFail_Click() { pass(u"cmdFail_Click"_s); }
    void cmdFail_Toggled(bool on) { pass(on ? u"on"_s : u"off"_s); }
};

MessageBox failureOf(const QString &window, const QString &handler)
{
    return {.text = u"Something went wrong in \"%1\":\nTable “Rezepte” is gone: %2"_s.arg(window,
                                                                                          handler),
            .title = u"Error"_s,
            .icon = Icon::Exclamation};
}

} // namespace

class tst_Boundary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Fragile::failing.clear(); }

    // The window is gone, the user is told its name and not the opener's, and the next try works.
    void load()
    {
        StrictDoorway doorway;
        QMdiArea area;
        Frame frame(doorway, area);
        for (const QString &handler : {u"Form_Load"_s, u"openDataSources"_s}) {
            Fragile::failing = handler;
            bool goneOn = false;
            doorway.expect(failureOf(u"Frail 100%1"_s, handler));
            QVERIFY(!frame.boundary().run(u"opener"_s, [&] {
                frame.show(frame.load<Fragile>());
                goneOn = true;
            }));
            QVERIFY(!goneOn);
            QVERIFY(!frame.find<Fragile>());
            QVERIFY(!frame.activeChild());
        }
        Fragile::failing.clear();
        QCOMPARE(frame.load<Fragile>().done, QStringList({u"Form_Load"_s, u"openDataSources"_s}));
    }

    void handlers()
    {
        StrictDoorway doorway;
        QMdiArea area;
        area.show();
        Frame frame(doorway, area);
        auto &window = frame.load<Fragile>();
        window.done.clear();
        window.button.setCheckable(true);

        Fragile::failing = u"Form_Activate"_s;
        doorway.expect(failureOf(window.title(), u"Form_Activate"_s));
        frame.show(window);
        QTest::qWait(0);
        doorway.checkAllCame();

        Fragile::failing = u"cmdFail_Click"_s;
        doorway.expect(failureOf(window.title(), u"cmdFail_Click"_s));
        window.button.click();
        QCOMPARE(window.done, QStringList{u"on"_s});
        Fragile::failing = u"off"_s;
        doorway.expect(failureOf(window.title(), u"off"_s));
        window.button.click();
        QCOMPARE(window.done, QStringList({u"on"_s, u"cmdFail_Click"_s}));

        Fragile::failing = u"Form_Deactivate"_s;
        doorway.expect(failureOf(window.title(), u"Form_Deactivate"_s));
        frame.hide(window);
        QVERIFY(!window.isVisible());
        Fragile::failing.clear();
        frame.show(window);
        QTRY_COMPARE(window.done.last(), u"Form_Activate"_s);
        frame.unload(window);
    }
};

QTEST_MAIN(tst_Boundary)
#include "tst_boundary.moc"
