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
    struct Row {
        QString text;
        std::string field;
        Comparison comparison;
        std::variant<qint64, std::string> value;
    };
    const QList<Row> table = {
        // The forms that the windows write.
        {u"RecipeID = 7"_s, "RecipeID", equal, 7},
        {u"RecipeID =7"_s, "RecipeID", equal, 7},
        {u"RecipeName LIKE'Soup'"_s, "RecipeName", like, "Soup"},
        {u"RecipeName ='Soup'"_s, "RecipeName", equal, "Soup"},
        {u"IngredientID = 12"_s, "IngredientID", equal, 12},
        {u"IngredientName LIKE 'Salt'"_s, "IngredientName", like, "Salt"},
        {u"IngredientName ='Salt'"_s, "IngredientName", equal, "Salt"},
        {u"IngredientName = 'Salt'"_s, "IngredientName", equal, "Salt"},
        {u"UtensilID = 2147483647"_s, "UtensilID", equal, 2147483647},
        {u"UtensilName LIKE 'Pan'"_s, "UtensilName", like, "Pan"},
        {u"UtensilName ='Pan'"_s, "UtensilName", equal, "Pan"},
        {u"UtensilName = 'Pan'"_s, "UtensilName", equal, "Pan"},
        // What stands between and inside.
        {u"  recipename like 'a'  "_s, "recipename", like, "a"},
        {u"RecipeID=-1"_s, "RecipeID", equal, -1},
        {u"N=''"_s, "N", equal, ""},
        {u"N='O''Neil''s'"_s, "N", equal, "O'Neil's"},
        {u"N=''''"_s, "N", equal, "'"},
        {u"N=' a = ''b'' '"_s, "N", equal, " a = 'b' "},
        {u"N LIKE '*a?\\\n'"_s, "N", like, "*a?\\\n"},
    };
    for (const Row &row : table) {
        const auto parsed = Criterion::parse(row.text);
        QVERIFY2(parsed.field == row.field && parsed.comparison == row.comparison
                     && parsed.value == row.value,
                 qUtf8Printable(row.text));
    }
}

void TestCriterion::refuses()
{
    for (const char *bad : {"",          " ",       "N",           "N =",
                            "= 'a'",     "N 'a'",   "N == 'a'",    "N < 5",
                            "NLIKE 'a'", "N LIKE",  "N LIKE 5",    "N LIKES 'a'",
                            "N='a",      "N='a'b'", "N='a' x",     "N='a''",
                            "N=a",       "N=\"a\"", "N=5x",        "N=-",
                            "N=--5",     "N=+5",    "N=5.0",       "N=99999999999999999999",
                            "N1=5",      "T.N=5",   "N=5 AND N=6", "N='a' OR N='b'"}) {
        const QString text = QString::fromLatin1(bad);
        QVERIFY2(failureOf([&] { Criterion::parse(text); }).endsWith(u": "_s + text), bad);
    }
}

void TestCriterion::makesWhatItReads()
{
    QString everyLatinCharacter;
    for (char16_t c = 0; c < 0x180; ++c)
        everyLatinCharacter += QChar(c);
    for (const QString &value : {u""_s, u"'"_s, u"''"_s, u"O'Neil"_s, u"' OR N='"_s, u"*?[]%_"_s,
                                 u" a "_s, u"🍲'ß"_s, everyLatinCharacter}) {
        for (const Comparison comparison : {Comparison::Equal, Comparison::Like}) {
            const auto parsed = Criterion::parse(criterion("RecipeName"_L1, comparison, value));
            QVERIFY(parsed.comparison == comparison);
            QCOMPARE(parsed.field, "RecipeName");
            QCOMPARE(std::get<std::string>(parsed.value), value.toStdString());
        }
    }
    for (const qint64 key :
         {qint64{0}, std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()})
        QCOMPARE(std::get<qint64>(Criterion::parse(criterion("N"_L1, key)).value), key);
}

QTEST_GUILESS_MAIN(TestCriterion)
#include "tst_criterion.moc"
