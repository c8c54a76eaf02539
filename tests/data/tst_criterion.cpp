#include "Criterion.h"
#include "RecipeFile.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestCriterion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void makesWhatItReads();
};

void TestCriterion::reads_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("isLike");
    QTest::addColumn<QVariant>("value");

    const auto row = [](const char *text, const QString &field, bool isLike,
                        const QVariant &value) { QTest::newRow(text) << field << isLike << value; };
    // The forms that the windows write.
    row("RecipeID = 7", u"RecipeID"_s, false, 7);
    row("RecipeID =7", u"RecipeID"_s, false, 7);
    row("IngredientID = 12", u"IngredientID"_s, false, 12);
    row("UtensilID = 2147483647", u"UtensilID"_s, false, 2147483647);
    row("RecipeName LIKE'Soup'", u"RecipeName"_s, true, u"Soup"_s);
    row("RecipeName ='Soup'", u"RecipeName"_s, false, u"Soup"_s);
    row("IngredientName LIKE 'Salt'", u"IngredientName"_s, true, u"Salt"_s);
    row("IngredientName ='Salt'", u"IngredientName"_s, false, u"Salt"_s);
    row("IngredientName = 'Salt'", u"IngredientName"_s, false, u"Salt"_s);
    row("UtensilName LIKE 'Pan'", u"UtensilName"_s, true, u"Pan"_s);
    row("UtensilName ='Pan'", u"UtensilName"_s, false, u"Pan"_s);
    row("UtensilName = 'Pan'", u"UtensilName"_s, false, u"Pan"_s);
    // What stands between and inside.
    row("  recipename like 'a'  ", u"recipename"_s, true, u"a"_s);
    row("RecipeID=-1", u"RecipeID"_s, false, -1);
    row("N=''", u"N"_s, false, u""_s);
    row("N='O''Neil''s'", u"N"_s, false, u"O'Neil's"_s);
    row("N=''''", u"N"_s, false, u"'"_s);
    row("N=' a = ''b'' '", u"N"_s, false, u" a = 'b' "_s);
    row("N LIKE '*a?\\\n'", u"N"_s, true, u"*a?\\\n"_s);
}

void TestCriterion::reads()
{
    QFETCH(const QString, field);
    QFETCH(const bool, isLike);
    QFETCH(const QVariant, value);
    const auto parsed = Criterion::parse(QString::fromUtf8(QTest::currentDataTag()));
    QCOMPARE(QString::fromStdString(parsed.field), field);
    QCOMPARE(parsed.comparison == Comparison::Like, isLike);
    if (const auto *key = std::get_if<qint64>(&parsed.value))
        QCOMPARE(QVariant(*key), value);
    else
        QCOMPARE(QVariant(QString::fromStdString(std::get<std::string>(parsed.value))), value);
}

void TestCriterion::refuses_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"",          " ",       "N",           "N =",
                             "= 'a'",     "N 'a'",   "N == 'a'",    "N < 5",
                             "NLIKE 'a'", "N LIKE",  "N LIKE 5",    "N LIKES 'a'",
                             "N='a",      "N='a'b'", "N='a' x",     "N='a''",
                             "N=a",       "N=\"a\"", "N=5x",        "N=-",
                             "N=--5",     "N=+5",    "N=5.0",       "N=99999999999999999999",
                             "N1=5",      "T.N=5",   "N=5 AND N=6", "N='a' OR N='b'"})
        QTest::newRow(text) << QString::fromUtf8(text);
}

void TestCriterion::refuses()
{
    QFETCH(const QString, text);
    const QString failure = failureOf([&] { Criterion::parse(text); });
    QVERIFY(!failure.isNull() && failure.endsWith(u": "_s + text));
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
