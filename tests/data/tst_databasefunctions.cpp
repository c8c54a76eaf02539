#include "DatabaseFunctions.h"

#include <QDate>
#include <QTest>

#include <array>

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
    const QVariant noDefault;
    // The value, the default and the result.
    const QList<std::array<QVariant, 3>> table = {
        {null, 0, 0},
        {null, noDefault, null},
        {u""_s, u"None"_s, u"None"_s},
        {QString(), 0, 0},
        {u""_s, noDefault, u""_s},
        {u" "_s, u"None"_s, u" "_s},
        {u"Soup"_s, u""_s, u"Soup"_s},
        {0LL, 5, 0LL},
        {false, true, false},
        {0.0, 5, 0.0},
        {QDate(2001, 2, 3), 5, QDate(2001, 2, 3)},
        {QDate(), 5, QDate()},
    };
    for (const auto &[value, defaultValue, expected] : table) {
        const QVariant result = ValueOrDefault(value, defaultValue);
        QCOMPARE(result, expected);
        QCOMPARE(result.typeId(), expected.typeId());
    }
}

QTEST_GUILESS_MAIN(TestDatabaseFunctions)
#include "tst_databasefunctions.moc"
