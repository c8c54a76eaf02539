#include "ExportStand.h"
#include "RecipeTypes.h"

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
    void linkEveryPage();
    void sayWhatTheRecipeFileSays();
    void takeHostileTextForText();
    void keepTheStoredOrder();
    void followTheFirstExport();
    void refuseAChangingRecipeFile();
};

namespace {

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', u"''"_s) + u'\'';
}

void addRecipe(const RecipeFile &file, const QString &name, int type,
               const QString &others = u"NULL, NULL, NULL, NULL, NULL"_s)
{
    file.write(
        u"INSERT INTO Recipes (RecipeName, RecipeType, Author, Serves, Rating, Description, "
        "Instructions) VALUES (%1, %2, %3)"_s.arg(quoted(name), QString::number(type), others));
}

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
    const qsizetype end = page.indexOf("</script>", start);
    return QJsonDocument::fromJson(page.sliced(start, end - start)).object();
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

// From the main menu every page is reached, and no link leads nowhere.
void TestWebPages::linkEveryPage()
{
    for (const PageStyle style : {PageStyle::PlainCard, PageStyle::Cookbook}) {
        ExportStand stand;
        stand.settings.style = style;
        addDishes(stand.file, 600);
        addRecipe(stand.file, u"index"_s, 15);
        const auto pages = stand.run();
        QCOMPARE(pages->recipes, 601);
        QCOMPARE(pages->mainMenu, stand.page(u"index.html"_s));
        QVERIFY(stand.progress.inOrder() && stand.progress.names.size() == 601);

        QSet<QString> reached{u"index.html"_s};
        for (QStringList ahead = reached.values(); !ahead.isEmpty();) {
            const QByteArray page = bytesOf(stand.page(ahead.takeLast()));
            QVERIFY(page.startsWith("<!DOCTYPE html>") && page.endsWith("</html>\n"));
            for (const QString &link : matches(page, u"href=\"([^\"]*)\""_s)) {
                const QString target = link.section(u'#', 0, 0);
                const QString anchor = link.section(u'#', 1);
                QVERIFY(anchor.isEmpty() || page.contains("id=\"" + anchor.toUtf8() + '"'));
                if (target.isEmpty() || reached.contains(target))
                    continue;
                QVERIFY2(QFile::exists(stand.page(target)), qPrintable(link));
                reached.insert(target);
                if (target.endsWith(".html"_L1))
                    ahead += target;
            }
        }
        const QStringList files = stand.entries(u"Pantrywise"_s);
        QCOMPARE(reached + QSet<QString>{u"pantrywise-files.txt"_s},
                 QSet<QString>(files.begin(), files.end()));
        QCOMPARE(reached.size(), 601 + 4 + 2); // recipes, types, main menu and style
        const QStringList counts = matches(bytesOf(pages->mainMenu), u"<small>([^<]*)</small>"_s);
        QCOMPARE(
            counts,
            QStringList({u"200 recipes"_s, u"200 recipes"_s, u"200 recipes"_s, u"1 recipe"_s}));
    }
}

void TestWebPages::sayWhatTheRecipeFileSays()
{
    ExportStand stand;
    stand.file.write(u"INSERT INTO Ingredients VALUES (1,'Salt',0,0,1),(2,'Ham',0,0,0);"
                     "INSERT INTO Utensils VALUES (1,'Pan'),(2,'Sieve');"
                     "INSERT INTO RecipeIngredients VALUES (1,2,'1 lb'),(1,1,NULL),(1,9,'1'),"
                     "(2,1,'2 tsp (fine)');"
                     "INSERT INTO RecipeUtensils VALUES (1,2),(1,1)"_s);
    addRecipe(stand.file, u"Ham Soup"_s, 1,
              u"'Ann', 2.5, 2, 'Good.', 'Boil.'||char(13,10,13,10)||' Serve.'||char(13,10)"_s);
    addRecipe(stand.file, u"Bare"_s, 1, u"'', 0, 0, '', ''"_s);
    stand.run();

    const QByteArray page = bytesOf(stand.page(u"ham-soup.html"_s));
    const QJsonObject json = jsonOf(page);
    QCOMPARE(json[u"name"].toString(), u"Ham Soup"_s);
    QCOMPARE(json[u"recipeCategory"].toString(), u"Soup"_s);
    QCOMPARE(json[u"recipeYield"].toString(), u"2.5"_s);
    QCOMPARE(json[u"description"].toString(), u"Good."_s);
    QCOMPARE(json[u"author"][u"name"].toString(), u"Ann"_s);
    QCOMPARE(json[u"aggregateRating"][u"ratingValue"].toInt(), 4);
    QCOMPARE(json[u"recipeIngredient"].toArray(), QJsonArray({u"1 lb Ham"_s, u"Salt"_s}));
    QCOMPARE(json[u"recipeInstructions"].toArray(), QJsonArray({u"Boil."_s, u"Serve."_s}));
    QCOMPARE(json[u"tool"].toArray(), QJsonArray({u"Sieve"_s, u"Pan"_s}));
    QVERIFY(!json.contains(u"suitableForDiet") && !page.contains("Vegetarian"));
    for (const char *shown : {"<b>1 lb</b> Ham", "<li dir=\"auto\">Salt</li>", "Serves 2.5",
                              "2 - Well recieved", "<p dir=\"auto\">Serve.</p>"})
        QVERIFY2(page.contains(shown), shown);

    const QByteArray bare = bytesOf(stand.page(u"bare.html"_s));
    const QJsonObject bareJson = jsonOf(bare);
    QCOMPARE(bareJson[u"suitableForDiet"].toString(), u"https://schema.org/VegetarianDiet"_s);
    for (const QString &field :
         {u"author"_s, u"recipeYield"_s, u"description"_s, u"aggregateRating"_s})
        QVERIFY2(!bareJson.contains(field), qPrintable(field));
    for (const char *hidden : {"Serves", "Rating", "Utensils", ">Instructions", "\"author\""})
        QVERIFY2(!bare.contains(hidden), hidden);
}

void TestWebPages::takeHostileTextForText()
{
    const QString hostile = u"</script><!--<b>&amp;\"' {{title}} \u202E"_s;
    ExportStand stand;
    addRecipe(stand.file, hostile, 99,
              u"%1, 'many', 'x', %1, %1||char(0,7,65534,10)||%1"_s.arg(quoted(hostile)));
    stand.file.write(u"UPDATE Recipes SET RecipeName = char(0, 27, 128)||RecipeName"_s);
    addRecipe(stand.file, u" \t"_s, 0);
    stand.run();
    QCOMPARE(stand.progress.names, QStringList({hostile, u"Untitled recipe"_s}));

    static const QRegularExpression control(u"[^\\P{Cc}\\n]|\\x{FFFE}"_s);
    for (const QString &name : stand.entries(u"Pantrywise"_s)) {
        const QByteArray page = bytesOf(stand.page(name));
        QVERIFY2(!QString::fromUtf8(page).contains(control), qPrintable(name));
        QCOMPARE(page.count("<b>") + page.count("<!--"), 0);
        QCOMPARE(page.count("</script>"), page.count("<script"));
    }
    const QByteArray page =
        bytesOf(stand.page(stand.entries(u"Pantrywise"_s).filter(u"script"_s).value(0)));
    QVERIFY(page.contains("<h1 dir=\"auto\">&lt;/script&gt;&lt;!--"));
    const QJsonObject json = jsonOf(page);
    QCOMPARE(json[u"name"].toString(), hostile);
    QCOMPARE(json[u"recipeInstructions"].toArray().size(), 2);
    QCOMPARE(json[u"recipeCategory"].toString(), recipeTypes().constFirst());
}

void TestWebPages::keepTheStoredOrder()
{
    ExportStand stand;
    for (const auto &[name, type] : {std::pair("b", 0), {"É", 2}, {"a", 2}, {"f", 0}})
        addRecipe(stand.file, QString::fromUtf8(name), type);
    stand.run(); // without settings: by type, then name
    const auto neighbours = [&stand](const QString &page) {
        return matches(bytesOf(stand.page(page)), u"rel=\"(?:prev|next)\" href=\"([^\"]*)\""_s);
    };
    QCOMPARE(neighbours(u"b.html"_s), QStringList{u"f.html"_s});
    QCOMPARE(neighbours(u"a.html"_s),
             QStringList({u"f.html"_s, stand.entries(u"Pantrywise"_s).filter(u"e_"_s).value(0)}));
    const QByteArray menu = bytesOf(stand.page(u"index.html"_s));
    QCOMPARE(matches(menu, u"<h3[^>]*>([^<]*)"_s), QStringList({u"A"_s, u"B"_s, u"E"_s, u"F"_s}));
}

// What is gone from the recipes is gone from the pages, and nothing lies beside them.
void TestWebPages::followTheFirstExport()
{
    ExportStand stand;
    QCOMPARE(stand.run()->recipes, 0);
    addRecipe(stand.file, u"Old"_s, 3);
    stand.run();
    QVERIFY(QFile::exists(stand.page(u"old.html"_s)));
    stand.file.write(u"UPDATE Recipes SET RecipeName = 'New', RecipeType = 4"_s);
    QVERIFY(
        exportPages(stand.file.path(), stand.page({}), {}, stand.progress)); // the folder itself
    QCOMPARE(stand.entries(u"Pantrywise"_s),
             QStringList({u"index.html"_s, u"new.html"_s, u"pantrywise-files.txt"_s, u"style.css"_s,
                          u"type_sauce.html"_s}));
    QCOMPARE(stand.entries(), QStringList{u"Pantrywise"_s});
}

// Nothing is locked while pages are written; the pages do not mix two states of the recipes.
void TestWebPages::refuseAChangingRecipeFile()
{
    ExportStand stand;
    addDishes(stand.file, 300);
    stand.progress.during = [&] {
        if (stand.progress.names.size() == 3)
            stand.file.write(u"DELETE FROM Recipes WHERE RecipeID > 290"_s);
    };
    QVERIFY(stand.failure().contains(u"Another program has changed the recipes"_s));
    QVERIFY(stand.entries().isEmpty());
}

QTEST_GUILESS_MAIN(TestWebPages)
#include "tst_webpages.moc"
