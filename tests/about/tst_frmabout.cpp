#include "about/frmAbout.h"
#include "frame/ErrorBoundary.h"
#include "support/MockInteraction.h"
#include "support/Rows.h"

#include <QLabel>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

class tst_frmAbout : public QObject
{
    Q_OBJECT

    MockInteraction m_interaction;
    const ErrorBoundary m_boundary{m_interaction};

private Q_SLOTS:
    void closesByKey_data()
    {
        addRows<Qt::Key>({{"Return", Qt::Key_Return}, {"Escape", Qt::Key_Escape}});
    }

    void closesByKey()
    {
        const auto [key] = fetchRow<Qt::Key>();
        frmAbout about(m_boundary);
        QTimer::singleShot(0, &about, [&, key = key] { QTest::keyClick(&about, key); });
        about.exec(); // would not return otherwise
    }

    void showsTheVersion()
    {
        frmAbout about(m_boundary);
        about.Form_Load();
        QCOMPARE(about.findChild<QLabel *>(u"lblVersion"_s)->text(),
                 u"Version "_s + QStringLiteral(PANTRYWISE_VERSION));
        QVERIFY(!(about.windowFlags() & Qt::WindowMinMaxButtonsHint));
    }
};

QTEST_MAIN(tst_frmAbout)
#include "tst_frmabout.moc"
