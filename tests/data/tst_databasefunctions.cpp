#include "DatabaseFunctions.h"

#include <QDate>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestDatabaseFunctions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueOrDefault_data();
    void valueOrDefault();
};

void TestDatabaseFunctions::valueOrDefault_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("defaultValue");
    QTest::addColumn<QVariant>("expected");

    const QVariant null;
    const auto row = [](const char *name, const QVariant &value, const QVariant &defaultValue,
                        const QVariant &expected) {
        QTest::newRow(name) << value << defaultValue << expected;
    };
    row("null", null, 0, 0);
    row("null, no default", null, null, null);
    row("empty text", u""_s, u"None"_s, u"None"_s);
    row("empty text that is null in Qt", QString(), 0, 0);
    row("empty text, no default", u""_s, null, u""_s);
    row("blank is a text", u" "_s, u"None"_s, u" "_s);
    row("text", u"Soup"_s, u""_s, u"Soup"_s);
    row("nought stays", 0LL, 5, 0LL);
    row("no stays", false, true, false);
    row("floating nought stays", 0.0, 5, 0.0);
    row("date", QDate(2001, 2, 3), 5, QDate(2001, 2, 3));
    row("no date is a value", QDate(), 5, QDate());
}

void TestDatabaseFunctions::valueOrDefault()
{
    QFETCH(const QVariant, value);
    QFETCH(const QVariant, defaultValue);
    QFETCH(const QVariant, expected);
    const QVariant result = ValueOrDefault(value, defaultValue);
    QCOMPARE(result, expected);
    QCOMPARE(result.typeId(), expected.typeId());
}

QTEST_GUILESS_MAIN(TestDatabaseFunctions)
#include "tst_databasefunctions.moc"
