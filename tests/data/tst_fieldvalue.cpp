#include "data/FieldValue.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_FieldValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void converts_data()
    {
        QTest::addColumn<FieldType>("type");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<std::optional<FieldValue>>("expected");

        const QVariantList noNumbers = {u" "_s,   u"-"_s,     u"5a"_s, u"--5"_s, u"1e3"_s,
                                        u"0x1"_s, u"nan"_s,   u"½"_s,  u"5."_s,  u".5"_s,
                                        u"1,5"_s, u"1.2.3"_s, qQNaN(), qInf(),   u"\u0665"_s};
        const struct {
            const char *name;
            FieldType type;
            QVariantList values;
            std::optional<FieldValue> expected;
        } table[] = {
            {"whole number", FieldType::WholeNumber, {u" +12 "_s, u"0012"_s, 12.0}, 12LL},
            {"smallest whole number", FieldType::WholeNumber, {u"-32768"_s, -32768}, -32768LL},
            {"not a whole number of 16 bits",
             FieldType::WholeNumber,
             {u"32768"_s, u"-32769"_s, u"1.0"_s, 1.5, u"99999999999999999999"_s},
             {}},
            {"not a whole number", FieldType::WholeNumber, noNumbers, {}},
            {"number without fraction", FieldType::Number, {u" +12.00 "_s, 12}, 12LL},
            {"number with fraction", FieldType::Number, {u"-02.50"_s, -2.5}, -2.5},
            {"large number", FieldType::Number, {u"1"_s + u"0"_s.repeated(300)}, 1e300},
            {"number out of range", FieldType::Number, {u"1"_s + u"0"_s.repeated(400)}, {}},
            {"number given a truth value", FieldType::Number, {u"true"_s}, {}},
            {"not a number", FieldType::Number, noNumbers, {}},
            {"yes", FieldType::YesNo, {true, u" tRUE "_s, u"-1"_s, u"7"_s, 0.5}, 1LL},
            {"no", FieldType::YesNo, {false, u"FALSE"_s, u"-00"_s, 0.0}, 0LL},
            {"neither yes nor no", FieldType::YesNo, {u"yes"_s, u"truee"_s, u"1.0"_s}, {}},
            {"neither number nor yes nor no", FieldType::YesNo, noNumbers, {}},
            {"text", FieldType::Text, {u" a\0b"_s}, std::string(" a\0b", 4)},
            {"not a key", FieldType::Key, {u"7"_s, 7.5}, {}},
        };
        for (const auto &[name, type, values, expected] : table) {
            for (const QVariant &value : values)
                QTest::addRow("%s: %s %s", name, value.typeName(), qUtf8Printable(value.toString()))
                    << type << value << expected;
        }
    }

    void converts()
    {
        QFETCH(FieldType, type);
        QFETCH(QVariant, value);
        QFETCH(std::optional<FieldValue>, expected);
        QVERIFY(convertToField(type, value) == expected);
    }
};

QTEST_GUILESS_MAIN(tst_FieldValue)
#include "tst_fieldvalue.moc"
