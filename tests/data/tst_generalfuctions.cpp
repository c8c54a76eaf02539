#include "GeneralFuctions.h"

#include <QTest>

class TestGeneralFuctions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesTheTwelveCharactersAlone();
};

void TestGeneralFuctions::refusesTheTwelveCharactersAlone()
{
    for (const QChar c : QStringLiteral("\\/:*?\"'<>|()"))
        QCOMPARE(ContainsInvalidChars(QStringLiteral("Salt%1y").arg(c)), QString());
    const QString name = QStringLiteral(" Crème brûlée & co., 50% [new]; a-b_c ");
    QCOMPARE(ContainsInvalidChars(name), name);
}

QTEST_GUILESS_MAIN(TestGeneralFuctions)
#include "tst_generalfuctions.moc"
