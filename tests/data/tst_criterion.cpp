#include "Criterion.h"
#include "RecipeFile.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestCriterion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads();
    void refuses();
    void makesWhatItReads();
};

void TestCriterion::reads()
{
    constexpr auto equal = Comparison::Equal;
    constexpr auto like = Comparison::Like;
    const struct {
        QString text;
        std::string field;
        Comparison comparison;
        std::variant<qint64, std::string> value;
    } table[] = {
        {u"RecipeID = 7"_s, "RecipeID", equal, 7},
        {u"RecipeID =-7"_s, "RecipeID", equal, -7},
        {u"RecipeName LIKE'Soup'"_s, "RecipeName", like, "Soup"},
        {u"IngredientName ='Salt'"_s, "IngredientName", equal, "Salt"},
        {u"UtensilName = 'Pan'"_s, "UtensilName", equal, "Pan"},
        {u"  recipename like 'a'  "_s, "recipename", like, "a"},
        {u"N=''"_s, "N", equal, ""},
        {u"N=' a = ''b'' '"_s, "N", equal, " a = 'b' "},
        {u"N LIKE '*a?\\\n'"_s, "N", like, "*a?\\\n"},
    };
    for (const auto &row : table) {
        const auto parsed = Criterion::parse(row.text);
        QVERIFY2(parsed.field == row.field && parsed.comparison == row.comparison
                     && parsed.value == row.value,
                 qUtf8Printable(row.text));
    }
}

void TestCriterion::refuses()
{
    for (const char *bad :
         {"",         "N",         "N =",        "= 'a'",    "N 'a'",
          "N == 'a'", "NLIKE 'a'", "N LIKE",     "N LIKE 5", "N='a",
          "N='a'b'",  "N='a' x",   "N='a''",     "N=a",      "N=\"a\"",
          "N=5x",     "N=-",       "N=+5",       "N=5.0",    "N=99999999999999999999",
          "N1=5",     "T.N=5",     "N=5 AND N=6"}) {
        const QString text = QString::fromLatin1(bad);
        QVERIFY2(failureOf([&] { Criterion::parse(text); }).endsWith(u": "_s + text), bad);
    }
}

void TestCriterion::makesWhatItReads()
{
    QString latin;
    for (char16_t c = 0; c < 0x180; ++c)
        latin += QChar(c);
    for (const QString &value : {u""_s, u"''"_s, u"' OR N='"_s, u" a "_s, u"🍲'ß"_s, latin}) {
        const auto parsed = Criterion::parse(criterion("N"_L1, Comparison::Like, value));
        QVERIFY(parsed.comparison == Comparison::Like && parsed.field == "N");
        QCOMPARE(std::get<std::string>(parsed.value), value.toStdString());
    }
    const qint64 smallest = std::numeric_limits<qint64>::min();
    QCOMPARE(std::get<qint64>(Criterion::parse(criterion("N"_L1, smallest)).value), smallest);
}

QTEST_GUILESS_MAIN(TestCriterion)
#include "tst_criterion.moc"
