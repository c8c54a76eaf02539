#include "Stands.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_Boundary : public QObject
{
    Q_OBJECT

    MainWindow m_main;

    // The box names the window and not the opener.
    void failsIn(const QString &handler, const std::function<void()> &act)
    {
        Stand::failing = handler;
        m_main.doorway.expect(
            {u"Something went wrong in \"Stand's 100%1\":\nTable “Rezepte” is gone"_s, u"Error"_s,
             Icon::Exclamation});
        act();
        QCoreApplication::processEvents();
        m_main.doorway.checkAllCame();
        Stand::failing.clear();
    }

private Q_SLOTS:
    // A window that cannot be loaded is gone, and the next try works.
    void load()
    {
        for (const QString &handler : {u"Form_Load"_s, u"openDataSources"_s}) {
            failsIn(handler, [this] {
                QVERIFY(!m_main.frame.boundary().run(u"opener"_s, [this] {
                    m_main.open<List>();
                    QFAIL("went on");
                }));
            });
            QVERIFY(!m_main.frame.find<List>());
            QVERIFY(!m_main.frame.activeChild());
        }
        m_main.open<List>();
        QTRY_COMPARE(happened, QStringList(u"List+"_s));
    }

    void handlers()
    {
        auto &list = m_main.frame.load<List>();
        failsIn(u"press"_s, [&] { list.button.click(); });
        failsIn(u"Form_Deactivate"_s, [&] { m_main.frame.hide(list); });
        QVERIFY(!list.isVisible());
        failsIn(u"Form_Activate"_s, [&] { m_main.frame.show(list); });
        happened.clear();
        list.button.click();
        QCOMPARE(happened, QStringList(u"List!"_s));
    }
};

QTEST_MAIN(tst_Boundary)
#include "tst_boundary.moc"
