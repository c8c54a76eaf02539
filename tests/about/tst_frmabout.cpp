#include "about/frmAbout.h"
#include "frame/ErrorBoundary.h"
#include "support/MockInteraction.h"

#include <QLabel>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

class tst_frmAbout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void content()
    {
        MockInteraction interaction;
        const ErrorBoundary boundary(interaction);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            frmAbout about(boundary);
            about.Form_Load();
            const auto text = [&](const char *label) {
                return about.findChild<QLabel *>(QString::fromLatin1(label))->text();
            };
            QTimer::singleShot(0, &about, [&] { QTest::keyClick(&about, key); });
            about.exec(); // comes back
            QCOMPARE(about.windowTitle(), u"About Pantrywise"_s);
            QCOMPARE(text("lblTitle"), u"Pantrywise"_s);
            QCOMPARE(text("lblVersion"), u"Version "_s + QStringLiteral(PANTRYWISE_VERSION));
            QCOMPARE(text("lblDisclaimer").count(u'\n'), 1);
            QVERIFY(!text("lblDescription").isEmpty());
            QVERIFY(!(about.windowFlags() & Qt::WindowMinMaxButtonsHint));
        }
    }
};

QTEST_MAIN(tst_frmAbout)
#include "tst_frmabout.moc"
