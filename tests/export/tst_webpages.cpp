#include "export/PageName.h"
#include "support/ExportFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestWebPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void haveNamesFromTitles();
    void linkEachOther();
    void sayWhatTheRecipeFileSays();
    void takeHostileTextForText();
    void keepTheStoredOrder();
    void neverMixTwoStates();
};

namespace {

// Of three types, in turns.
void addDishes(const RecipeFile &file, int count)
{
    file.write(
        u"WITH n(i) AS (VALUES (0) UNION ALL SELECT i + 1 FROM n WHERE i + 1 < %1) INSERT "
        "INTO Recipes (RecipeName, RecipeType) SELECT 'Dish '||i, i % 3 * 5 FROM n"_s.arg(count));
}

QJsonObject jsonOf(const QByteArray &page)
{
    const QByteArray open = R"(<script type="application/ld+json">)";
    const qsizetype start = page.indexOf(open) + open.size();
    return QJsonDocument::fromJson(page.sliced(start, page.indexOf("</script>") - start)).object();
}

QStringList matches(const QByteArray &page, const QString &pattern)
{
    QStringList found;
    auto all = QRegularExpression(pattern).globalMatch(QString::fromUtf8(page));
    while (all.hasNext())
        found += all.next().captured(1);
    return found;
}

} // namespace

// A name is unique, and the same whatever other recipes there are.
void TestWebPages::haveNamesFromTitles()
{
    const std::pair<QString, QString> table[] = {
        {u"Autumn Soup 2"_s, u"autumn-soup-2"_s},
        {u"Crème"_s, u"creme_[0-9a-f]{6}"_s},
        {u"CRE\u0301ME"_s, u"creme_.{6}"_s},
        {u"Creme"_s, u"creme"_s},
        {u"Straße Łódź Ærø kısır"_s, u"strasse-lodz-aero-kisir_.{6}"_s},
        {u"Baba's  (best)! Soup"_s, u"babas-best-soup_.{6}"_s},
        {u"../../etc/passwd"_s, u"etc-passwd_.{6}"_s},
        {u"борщ"_s, u"recipe_.{6}"_s},
        {u"Soup\0.exe"_s, u"soup-exe_.{6}"_s},
        {u"CON"_s, u"con_.{6}"_s},
        {u"a "_s.repeated(500), u"a(-a){29}_.{6}"_s},
    };
    RecipePageNames together;
    QSet<QString> names;
    for (const auto &[title, pattern] : table) {
        const QString name = together.take(title, 1);
        QVERIFY2(QRegularExpression(u"\\A"_s + pattern + u"\\.html\\z"_s).match(name).hasMatch(),
                 qPrintable(name));
        QCOMPARE(RecipePageNames().take(title, 2), name);
        names.insert(name);
    }
    QCOMPARE(names.size(), std::ssize(table));
    QCOMPARE(together.take(u"CREME"_s, 7), u"creme_7.html"_s);
    QCOMPARE(typePageName(u"Grains/Bean/Rice"_s), u"type_grains-bean-rice.html"_s);
}

// From the main menu every page is reached, and no link leads nowhere.
void TestWebPages::linkEachOther()
{
    ExportFixture stand;
    addDishes(stand.file, 600);
    stand.file.write(u"INSERT INTO Recipes (RecipeName, RecipeType) VALUES ('index', 15)"_s);
    QCOMPARE(stand.run(), QString());

    QMap<QString, bool> reached{{u"index.html"_s, true}, {u"pantrywise-files.txt"_s, true}};
    for (QStringList ahead = reached.keys(); !ahead.isEmpty();) {
        const QByteArray page = bytesOf(stand.page(ahead.takeLast()));
        for (const QString &link : matches(page, u"href=\"([^\"]*)\""_s)) {
            if (link.startsWith(u'#'))
                QVERIFY(page.contains("id=\"" + link.sliced(1).toUtf8() + '"'));
            else if (!std::exchange(reached[link], true))
                ahead += link;
        }
    }
    QCOMPARE(reached.keys(), stand.pages());
    QCOMPARE(matches(bytesOf(stand.page(u"index.html"_s)), u"<small>([^<]*)"_s),
             QStringList({u"200 recipes"_s, u"200 recipes"_s, u"200 recipes"_s, u"1 recipe"_s}));
}

void TestWebPages::sayWhatTheRecipeFileSays()
{
    ExportFixture stand;
    stand.file.write(u"INSERT INTO Ingredients VALUES (1,'Salt',0,0,1),(2,'Ham',0,0,0);"
                     "INSERT INTO Utensils VALUES (1,'Pan'),(2,'Sieve');"
                     "INSERT INTO RecipeIngredients VALUES (1,2,'1 lb'),(1,1,NULL),(1,9,'1'),"
                     "(2,1,'2 tsp (fine)');"
                     "INSERT INTO RecipeUtensils VALUES (1,2),(1,1);"
                     "INSERT INTO Recipes VALUES (1,'Ham Soup','Good.','Ann',1,"
                     "'Boil.'||char(13,10,13,10)||' Serve.'||char(13,10),2,2.5),"
                     "(2,'Bare','','',1,'',0,0),(3,'None','','',1,'',0,0)"_s);
    QCOMPARE(stand.run(), QString());
    const QByteArray page = bytesOf(stand.page(u"ham-soup.html"_s));
    QCOMPARE(
        QJsonDocument(jsonOf(page)).toJson(QJsonDocument::Compact),
        R"({"@context":"https://schema.org","@type":"Recipe","aggregateRating":{)"
        R"("@type":"AggregateRating","bestRating":5,"ratingCount":1,)"
        R"("ratingExplanation":"2 - Well recieved","ratingValue":4,"worstRating":1},)"
        R"("author":{"@type":"Person","name":"Ann"},"description":"Good.","name":"Ham Soup",)"
        R"("recipeCategory":"Soup","recipeIngredient":["1 lb Ham","Salt"],)"
        R"("recipeInstructions":["Boil.","Serve."],"recipeYield":"2.5","tool":["Sieve","Pan"]})");
    for (const char *shown : {"<b>1 lb</b> Ham", "<li dir=\"auto\">Salt</li>", "Serves 2.5",
                              "2 - Well recieved", "<p dir=\"auto\">Serve.</p>"})
        QVERIFY2(page.contains(shown), shown);
    QVERIFY(!page.contains("Vegetarian"));

    const QByteArray bare = bytesOf(stand.page(u"bare.html"_s));
    QVERIFY(bare.contains(">Vegetarian<"));
    QVERIFY(jsonOf(bare).contains(u"suitableForDiet"));
    QVERIFY(bytesOf(stand.page(u"none.html"_s)).contains(">Vegetarian<")); // as in its window
    for (const char *hidden : {"Serves", "ating", "Utensils", ">Instructions", "\"author", "Yield"})
        QVERIFY2(!bare.contains(hidden), hidden);
}

void TestWebPages::takeHostileTextForText()
{
    const QString hostile = u"</script><!--<b>&amp;\"' {{title}} \u202E"_s;
    ExportFixture stand;
    stand.file.write(QString(u"INSERT INTO Recipes SELECT 1, char(0,27,128)||t, t, t, 99, "
                             "t||char(0,7,65534,10)||t, 'x', t FROM (SELECT '%1' AS t);"
                             "INSERT INTO Recipes (RecipeName) VALUES (' '||char(9))"_s)
                         .arg(QString(hostile).replace(u'\'', u"''"_s)));
    QCOMPARE(stand.run(), QString());
    QCOMPARE(stand.progress.names, QStringList({hostile, u"Untitled recipe"_s}));

    static const QRegularExpression control(u"[^\\P{Cc}\\n]|\\x{FFFE}"_s);
    for (const QString &name : stand.pages()) {
        const QByteArray page = bytesOf(stand.page(name));
        QVERIFY2(!QString::fromUtf8(page).contains(control), qPrintable(name));
        QCOMPARE(page.count("<b>") + page.count("<!--"), 0);
        QCOMPARE(page.count("</script>"), page.count("<script"));
    }
    const QByteArray page = bytesOf(stand.page(stand.pages().filter(u"script"_s).value(0)));
    QVERIFY(page.contains("<h1 dir=\"auto\">&lt;/script&gt;&lt;!--"));
    QCOMPARE(jsonOf(page)[u"name"].toString(), hostile);
    QCOMPARE(jsonOf(page)[u"recipeInstructions"].toArray(), QJsonArray({hostile, hostile}));
    QCOMPARE(jsonOf(page)[u"recipeCategory"].toString(), u"Misc"_s);
}

void TestWebPages::keepTheStoredOrder()
{
    ExportFixture stand; // without settings: by type, then name
    stand.file.write(u"INSERT INTO Recipes (RecipeName, RecipeType) "
                     "VALUES ('b', 0), ('É', 2), ('a', 2), ('f', 0)"_s);
    QCOMPARE(stand.run(), QString());
    QCOMPARE(matches(bytesOf(stand.page(u"a.html"_s)), u"rel=\"(?:prev|next)\" href=\"(.)"_s),
             QStringList({u"f"_s, u"e"_s}));
    QCOMPARE(matches(bytesOf(stand.page(u"b.html"_s)), u"rel=\"(.)"_s),
             QStringList({u"s"_s, u"n"_s})); // the style sheet, the next one
    QCOMPARE(matches(bytesOf(stand.page(u"index.html"_s)), u"<h3[^>]*>([^<]*)"_s),
             QStringList({u"A"_s, u"B"_s, u"E"_s, u"F"_s}));
}

// Nothing is locked while pages are written, so that others may change the recipes.
void TestWebPages::neverMixTwoStates()
{
    ExportFixture stand;
    addDishes(stand.file, 300);
    stand.progress.onProgress = [&] {
        if (stand.progress.names.size() == 3)
            stand.file.write(u"UPDATE Recipes SET Author = 'Ann'"_s);
    };
    QVERIFY(stand.run().contains(u"Another program has changed the recipes"_s));
    QVERIFY(stand.entries().isEmpty());
}

QTEST_GUILESS_MAIN(TestWebPages)
#include "tst_webpages.moc"
