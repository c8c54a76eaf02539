#include "data/FieldValue.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestFieldValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stores()
    {
        const auto whole = FieldType::WholeNumber;
        const auto number = FieldType::Number;
        const auto yesNo = FieldType::YesNo;
        const QVariantList noNumbers = {u" "_s,   u"-"_s,     u"5a"_s, u"--5"_s, u"1e3"_s,
                                        u"0x1"_s, u"nan"_s,   u"½"_s,  u"5."_s,  u".5"_s,
                                        u"1,5"_s, u"1.2.3"_s, qQNaN(), qInf(),   u"\u0665"_s};
        const std::tuple<FieldType, QVariantList, std::optional<FieldValue>> table[] = {
            {whole, {u" +12 "_s, u"0012"_s, 12.0}, 12LL},
            {whole, {u"-32768"_s, -32768}, -32768LL},
            {whole, {u"32768"_s, u"-32769"_s, u"1.0"_s, 1.5, u"99999999999999999999"_s}, {}},
            {number, {u" +12.00 "_s, 12}, 12LL},
            {number, {u"-02.50"_s, -2.5}, -2.5},
            {number, {u"1"_s + u"0"_s.repeated(300)}, 1e300},
            {number, {u"true"_s, u"1"_s + u"0"_s.repeated(400)}, {}},
            {yesNo, {true, u" tRUE "_s, u"-1"_s, u"7"_s, 0.5}, 1LL},
            {yesNo, {false, u"FALSE"_s, u"-00"_s, 0.0}, 0LL},
            {yesNo, {u"yes"_s, u"truee"_s, u"1.0"_s}, {}},
            {whole, noNumbers, {}},
            {number, noNumbers, {}},
            {yesNo, noNumbers, {}},
            {FieldType::Text, {u" a\0b"_s}, std::string(" a\0b", 4)},
            {FieldType::Key, {u"7"_s, 7.5}, {}},
        };
        for (const auto &[type, values, expected] : table) {
            for (const QVariant &value : values)
                QVERIFY2(convertToField(type, value) == expected, qUtf8Printable(value.toString()));
        }
    }
};

QTEST_GUILESS_MAIN(TestFieldValue)
#include "tst_fieldvalue.moc"
