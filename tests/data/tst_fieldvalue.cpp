#include "FieldValue.h"

#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

class TestFieldValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stores_data();
    void stores();
};

namespace {

// What is stored, with its type; an invalid variant where the value is refused.
QVariant stored(FieldType type, const QVariant &value)
{
    const std::optional<FieldValue> result = storedValue(type, value);
    if (!result)
        return {};
    if (const auto *integer = std::get_if<qint64>(&*result))
        return *integer;
    if (const auto *real = std::get_if<double>(&*result))
        return *real;
    if (const auto *text = std::get_if<std::string>(&*result))
        return QString::fromStdString(*text);
    return QVariant::fromValue(nullptr);
}

} // namespace

void TestFieldValue::stores_data()
{
    QTest::addColumn<FieldType>("type");
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QVariant>("expected");

    const auto whole = FieldType::WholeNumber;
    const auto number = FieldType::Number;
    const auto yesNo = FieldType::YesNo;
    const auto row = [](const char *name, FieldType type, const QVariantList &values,
                        const QVariant &expected) {
        QTest::newRow(name) << type << values << expected;
    };
    const QVariantList noNumbers = {
        u""_s,      u" "_s,   u"+"_s,       u"-"_s,   u"a"_s,    u"5a"_s,  u"5 5"_s,
        u"--5"_s,   u"+-5"_s, u"- 5"_s,     u"1e3"_s, u"0x10"_s, u"1,5"_s, u"1,000"_s,
        u"nan"_s,   u"inf"_s, u"\u0665"_s,  u"½"_s,   u"."_s,    u"5."_s,  u".5"_s,
        u"1.2.3"_s, u"\t5"_s, u"5\u00A0"_s, qQNaN(),  qInf()};
    row("whole", whole, {u"12"_s, u" 12 "_s, u"+12"_s, u"0012"_s, 12, 12LL, 12.0}, 12LL);
    row("whole, smallest", whole, {u"-32768"_s, -32768}, -32768LL);
    row("whole, largest", whole, {u"32767"_s, 32767}, 32767LL);
    row("whole, minus nought", whole, {u"-0"_s, 0, false}, 0LL);
    row("whole, refused", whole,
        QVariantList{u"32768"_s, u"-32769"_s, u"1.0"_s, u"1.5"_s, u"true"_s, 1.5, 32768,
                     u"99999999999999999999"_s}
            + noNumbers,
        {});
    row("number, whole", number, {u"12"_s, u" +12.00 "_s, 12, 12.0}, 12LL);
    row("number, fraction", number, {u"-2.5"_s, u"-02.50"_s, -2.5}, -2.5);
    row("number, beyond 32 bits", number, {u"9007199254740992"_s, 9007199254740992.0},
        9007199254740992LL);
    row("number, whole as SQLite keeps it", number, {u"1000000000000000000"_s, 1e18},
        1'000'000'000'000'000'000LL);
    row("number, beyond 64 bits", number, {u"1"_s + u"0"_s.repeated(300), 1e300}, 1e300);
    row("number, refused", number,
        QVariantList{u"true"_s, u"1"_s + u"0"_s.repeated(400)} + noNumbers, {});
    row("yes", yesNo, {true, u"True"_s, u" tRUE "_s, u"1"_s, u"-1"_s, u"7"_s, -1, 0.5}, 1LL);
    row("no", yesNo, {false, u"False"_s, u"FALSE"_s, u"0"_s, u"-00"_s, 0, 0.0}, 0LL);
    row("yes or no, refused", yesNo,
        QVariantList{u"yes"_s, u"no"_s, u"truee"_s, u"1.0"_s, u"0.0"_s} + noNumbers, {});
    row("text", FieldType::Text, {u" a'\0b 🍲 "_s}, u" a'\0b 🍲 "_s);
    row("empty text", FieldType::Text, {u""_s, QString()}, u""_s);
    row("key", FieldType::Key, {7, 7LL, 7U}, 7LL);
    row("key, refused", FieldType::Key, {u"7"_s, u""_s, u"a"_s, 7.5}, {});
    for (const FieldType type : {whole, number, yesNo, FieldType::Text, FieldType::Key})
        QTest::addRow("null %d", static_cast<int>(type))
            << type << QVariantList{QVariant()} << QVariant::fromValue(nullptr);
}

void TestFieldValue::stores()
{
    QFETCH(const FieldType, type);
    QFETCH(const QVariantList, values);
    QFETCH(const QVariant, expected);
    for (const QVariant &value : values) {
        const QVariant result = stored(type, value);
        QVERIFY2(result == expected && result.typeId() == expected.typeId(),
                 qUtf8Printable(value.toString() + u" gives "_s + result.toString()));
    }
}

QTEST_GUILESS_MAIN(TestFieldValue)
#include "tst_fieldvalue.moc"
