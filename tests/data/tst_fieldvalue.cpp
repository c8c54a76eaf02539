#include "data/FieldValue.h"
#include "support/Rows.h"

using namespace Qt::Literals::StringLiterals;

class tst_FieldValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void converts_data()
    {
        using enum FieldType;
        QList<std::tuple<QByteArray, FieldType, QVariant, std::optional<FieldValue>>> rows;
        const auto add = [&rows](const QByteArray &name, FieldType type, const QVariantList &values,
                                 const std::optional<FieldValue> &expected) {
            for (const QVariant &value : values)
                rows.append({name + ": " + value.typeName() + ' ' + value.toString().toUtf8(), type,
                             value, expected});
        };
        const QVariantList noNumbers = {u" "_s,   u"-"_s,     u"5a"_s, u"--5"_s, u"1e3"_s,
                                        u"0x1"_s, u"nan"_s,   u"½"_s,  u"5."_s,  u".5"_s,
                                        u"1,5"_s, u"1.2.3"_s, qQNaN(), qInf(),   u"\u0665"_s};
        add("whole number", WholeNumber, {u" +12 "_s, u"0012"_s, 12.0}, 12LL);
        add("smallest whole number", WholeNumber, {u"-32768"_s, -32768}, -32768LL);
        add("largest whole number", WholeNumber, {u"32767"_s, 32767}, 32767LL);
        add("not a whole number of 16 bits", WholeNumber,
            {u"32768"_s, u"-32769"_s, u"1.0"_s, 1.5, u"99999999999999999999"_s}, {});
        add("not a whole number", WholeNumber, noNumbers, {});
        add("number without fraction", Number, {u" +12.00 "_s, 12}, 12LL);
        add("number with fraction", Number, {u"-02.50"_s, -2.5}, -2.5);
        add("large number", Number, {u"1"_s + u"0"_s.repeated(300)}, 1e300);
        add("number that is too large for an integer", Number, {u"9223372036854775808"_s}, 0x1p63);
        add("number of many digits", Number, {u"8765130134078358579"_s}, 8765130134078358528LL);
        add("number out of range", Number, {u"1"_s + u"0"_s.repeated(400)}, {});
        add("not a number", Number, noNumbers + QVariantList{u"true"_s}, {});
        add("yes", YesNo, {true, u" tRUE "_s, u"-1"_s, u"7"_s, 0.5}, 1LL);
        add("no", YesNo, {false, u"FALSE"_s, u"-00"_s, 0.0}, 0LL);
        add("neither yes nor no", YesNo, {u"yes"_s, u"truee"_s, u"1.0"_s}, {});
        add("neither number nor yes nor no", YesNo, noNumbers, {});
        add("text", Text, {u" a\0b"_s}, std::string(" a\0b", 4));
        add("not a key", Key, {u"7"_s, 7.5}, {});
        addRows(rows);
    }

    void converts()
    {
        const auto [type, value, expected] =
            fetchRow<FieldType, QVariant, std::optional<FieldValue>>();
        QVERIFY(convertToField(type, value) == expected);
    }

    // What another program has stored may be of any type.
    void storedPosition_data()
    {
        addRows<QVariant, int>({
            {"position", QVariant(3LL), 3},
            {"text", QVariant(u"3"_s), -1},
            {"fraction", QVariant(2.5), -1},
            {"too large", QVariant(1LL << 32), -1},
            {"null", QVariant(), -1},
        });
    }
    void storedPosition()
    {
        const auto [stored, expected] = fetchRow<QVariant, int>();
        QCOMPARE(::storedPosition(stored), expected);
    }
};

QTEST_GUILESS_MAIN(tst_FieldValue)
#include "tst_fieldvalue.moc"
