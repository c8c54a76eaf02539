#include "DatabaseFunctions.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestDatabaseFunctions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueOrDefault();
};

void TestDatabaseFunctions::valueOrDefault()
{
    const QVariant null;
    // The value, the default and the result.
    const QVariantList table[] = {
        {null, 0, 0},      {null, null, null},   {u""_s, u"None"_s, u"None"_s},
        {QString(), 0, 0}, {u""_s, null, u""_s}, {u" "_s, u"None"_s, u" "_s},
        {0LL, 5, 0LL},     {false, true, false}};
    for (const QVariantList &row : table) {
        const QVariant result = ValueOrDefault(row[0], row[1]);
        QCOMPARE(result, row[2]);
        QCOMPARE(result.typeId(), row[2].typeId());
    }
}

QTEST_GUILESS_MAIN(TestDatabaseFunctions)
#include "tst_databasefunctions.moc"
