#include "export/ExportFixture.h"
#include "export/ListFields.h"
#include "export/PageFields.h"
#include "export/PageNames.h"
#include "export/RecipeFields.h"
#include "export/SiteMap.h"
#include "export/StepNumber.h"
#include "export/TemplateFields.h"
#include "support/Rows.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

QString kindOf(const TemplateField &field)
{
    switch (field.kind) {
    case TemplateField::Kind::YesNo:
        return u"flag "_s;
    case TemplateField::Kind::List:
    case TemplateField::Kind::Page:
        return u"list "_s;
    default:
        return u"text "_s;
    }
}

QString kindOf(const TemplateData::Value &value)
{
    if (std::holds_alternative<bool>(value))
        return u"flag "_s;
    return std::holds_alternative<TemplateData::List>(value) ? u"list "_s : u"text "_s;
}

// Adds the kinds and paths of fields such as "text types/link".
void collectPaths(const TemplateFields &fields, const QString &prefix, QSet<QString> &paths)
{
    for (const TemplateField &field : fields) {
        const QString path = prefix + QString::fromUtf8(QByteArrayView(field.name));
        paths += kindOf(field) + path;
        collectPaths(field.fields, path + u'/', paths);
    }
}

void collectPaths(const TemplateData &data, const QString &prefix, QSet<QString> &paths)
{
    for (const auto &[name, value] : data.values()) {
        const QString path = prefix + QString::fromUtf8(QByteArrayView(name));
        paths += kindOf(value) + path;
        if (const auto *entries = std::get_if<TemplateData::List>(&value)) {
            for (const TemplateData &entry : *entries)
                collectPaths(entry, path + u'/', paths);
        }
    }
}

// A book whose pages have every field: the list of its recipes is divided, and letters as well.
SiteMap siteWithAllFields()
{
    SiteContents contents;
    for (int key = 1; key <= 801; ++key)
        contents.recipes.push_back({key, "A" + std::to_string(key), 0});
    for (int key = 1; key <= 401; ++key)
        contents.ingredients.push_back({.key = key,
                                        .name = "Leek " + std::to_string(key),
                                        .type = key % 10 == 0 ? 1 : 2,
                                        .recipes = {1}});
    contents.utensils.push_back(
        {.key = 1, .name = "Pan", .recipes = std::vector<RecipePosition>(40)});
    std::iota(contents.utensils[0].recipes.begin(), contents.utensils[0].recipes.end(), 0U);
    return siteMapOf(std::move(contents));
}

// Adds the paths of all fields that pages of this kind set.
void collectSetPaths(PageKind kind, QSet<QString> &paths)
{
    const SiteMap site = siteWithAllFields();
    const TemplateData common = commonFields(site, PageStyle::Cookbook, QDate(2026, 11, 5));
    const RecipeDetails details{.author = "Ann",
                                .servings = "2",
                                .rating = 1,
                                .description = {"Good."},
                                .ingredients = {{site.ingredient(1), "1, chopped"}},
                                .utensils = {site.utensil(1)},
                                .instructions = {"Boil."}};
    const auto collect = [&](const TemplateData &data) { collectPaths(data, {}, paths); };
    collect(common);
    if (kind == PageKind::MainMenu) {
        const SiteList list = allRecipes(site);
        for (const bool mayBeDivided : {false, true})
            collect(mainMenuFields(site, common, list, divide(list, mayBeDivided)));
    } else if (kind == PageKind::Category) {
        forEachList(site, [&](const SiteList &list) {
            const DividedList divided = divide(list, true);
            collect(categoryFields(common, list, divided));
            for (std::size_t i = 0; i < divided.parts.size(); ++i)
                collect(partFields(common, list, divided, i));
            return true;
        });
    } else {
        collect(recipeFields(site, common, 1, details));
    }
}

QString document()
{
    return QString::fromUtf8(bytesOf(QStringLiteral(TEMPLATES_DOCUMENT)));
}

// Recipes of three types in turn.
void addDishes(const TestDatabase &file, int count)
{
    file.write(
        u"WITH n(i) AS (VALUES (0) UNION ALL SELECT i + 1 FROM n WHERE i + 1 < %1) INSERT "
        "INTO Recipes (RecipeName, RecipeType) SELECT 'Dish '||i, i % 3 * 5 FROM n"_s.arg(count));
}

QJsonObject jsonOf(const QByteArray &page)
{
    const QByteArray open = R"(<script type="application/ld+json">)";
    const qsizetype start = page.indexOf(open) + open.size();
    return QJsonDocument::fromJson(page.sliced(start, page.indexOf("</script>", start) - start))
        .object();
}

QStringList matches(const QByteArray &page, const char *pattern)
{
    QStringList found;
    for (const auto &match :
         QRegularExpression(QString::fromLatin1(pattern)).globalMatch(QString::fromUtf8(page)))
        found += match.captured(1);
    return found;
}

} // namespace

class tst_WebPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data()
    {
        addRows<QString, QString>({
            {"complete", u"Autumn Soup 2"_s, u"autumn-soup-2"_s},
            {"accent", u"Crème"_s, u"creme_[0-9a-f]{10}"_s},
            {"combining accent", u"CRE\u0301ME"_s, u"creme_.{10}"_s},
            {"other letters", u"Straße Łódź Ærø kısır œuf"_s,
             u"strasse-lodz-aero-kisir-oeuf_.{10}"_s},
            {"punctuation", u"Baba's  (best)! Soup"_s, u"babas-best-soup_.{10}"_s},
            {"path", u"../../etc/passwd"_s, u"etc-passwd_.{10}"_s},
            {"no Latin letters", u"борщ"_s, u"recipe_.{10}"_s},
            {"null character", u"Soup\0.exe"_s, u"soup-exe_.{10}"_s},
            {"reserved", u"CON"_s, u"con_.{10}"_s},
            {"reserved, with a digit", u"LPT0"_s, u"lpt0_.{10}"_s},
            {"long", u"a "_s.repeated(500), u"a(-a){29}_.{10}"_s},
        });
    }

    // A name is the same whatever the recipe's key is.
    void names()
    {
        const auto [title, pattern] = fetchRow<QString, QString>();
        const QString name = PageNames().takeRecipe(title, 1);
        QVERIFY2(QRegularExpression(u"\\A"_s + pattern + u"\\.html\\z"_s).match(name).hasMatch(),
                 qPrintable(name));
        QCOMPARE(PageNames().takeRecipe(title, 2), name);
    }

    void namesAreUnique()
    {
        PageNames names;
        QCOMPARE(names.takeRecipe(u"Creme"_s, 1), u"creme.html"_s);
        const QString accented = names.takeRecipe(u"Crème"_s, 2);
        QVERIFY(accented.startsWith(u"creme_"));
        QVERIFY(names.takeRecipe(u"CRE\u0301ME"_s, 3) != accented);
        QCOMPARE(names.takeRecipe(u"CREME"_s, 7), u"creme_7.html"_s);
    }

    // Every page is within three clicks of the main menu, and no link is broken.
    void links()
    {
        ExportFixture fixture;
        addDishes(fixture.file, 1000);
        fixture.file.write(u"INSERT INTO Recipes (RecipeName, RecipeType) VALUES ('index', 15);"
                           "INSERT INTO Ingredients VALUES (1,'Salt',3,0,1),(2,'Ham',4,0,0);"
                           "INSERT INTO Utensils VALUES (1,'Pan');"
                           "INSERT INTO RecipeIngredients SELECT RecipeID, 1, '' FROM Recipes;"
                           "INSERT INTO RecipeUtensils SELECT RecipeID, 1 FROM Recipes"_s);
        QCOMPARE(fixture.run(), QString());

        QSet<QString> reached{u"index.html"_s};
        QStringList unread = reached.values();
        for (int clicks = 0; clicks <= 3; ++clicks) {
            QSet<QString> found;
            for (const QString &name : std::exchange(unread, {})) {
                const QByteArray page = bytesOf(fixture.page(name));
                for (const QString &link : matches(page, "(?:href|src|data-search)=\"([^\"]*)\"")) {
                    if (link.startsWith(u'#'))
                        QVERIFY(page.contains("id=\"" + link.sliced(1).toUtf8() + '"'));
                    else if (!link.startsWith(u"data:"))
                        found.insert(link);
                }
            }
            unread = (found - reached).values();
            reached += found;
        }
        reached.insert(u"pantrywise-files.txt"_s);
        QStringList names = reached.values();
        names.sort();
        QCOMPARE(names, fixture.pages());
        const auto pageAbove = [&fixture](const QString &page) {
            return matches(bytesOf(fixture.page(page)), "rel=\"up\" href=\"([^\"]*)").value(0);
        };
        QCOMPARE(pageAbove(u"ingredient_salt.html"_s), u"all_ingredients.html"_s);
        QCOMPARE(pageAbove(u"ingredient_salt_d.html"_s), u"ingredient_salt.html"_s);
        QCOMPARE(pageAbove(u"letter_d.html"_s), u"index.html"_s);
        QCOMPARE(matches(bytesOf(fixture.page(u"index.html"_s)), "<small>([^<]*)").join(u", "_s),
                 u"334 recipes, 333 recipes, 333 recipes, 1 recipe, "
                 "1 ingredient, 1,001 recipes, 1 utensil, 1,000, 1"_s);
    }

    void contents()
    {
        ExportFixture fixture;
        fixture.file.write(QString::fromLatin1(joinsBeginWithCatalog));
        fixture.file.write(
            u"INSERT INTO Ingredients VALUES (1,'Salt',3,0,1),(2,'Ham',4,0,0);"
            "INSERT INTO Utensils VALUES (1,'Pan'),(2,'Sieve');"
            "INSERT INTO RecipeIngredients VALUES (1,2,'1 lb, cooked'),(1,1,NULL),(1,9,'1'),"
            "(2,1,'2 tsp (fine)');"
            "INSERT INTO RecipeUtensils VALUES (1,2),(1,1);"
            "INSERT INTO Recipes VALUES (1,'Ham Soup','Good.','Ann',1,"
            "'Boil.'||char(13,10,13,10)||' Serve.'||char(13,10),2,2.5),"
            "(2,'Bare','','',11,'',0,1),(3,'None','','',1,'',1,0),"
            "(4,'Worst','','',1,'2) Wait.',5,0)"_s);
        QCOMPARE(fixture.run(), QString());
        const QByteArray page = bytesOf(fixture.page(u"ham-soup.html"_s));
        QVERIFY(page.contains(
            R"({"@context":"https://schema.org","@type":"Recipe","name":"Ham Soup",)"
            R"("author":{"@type":"Person","name":"Ann"},"description":"Good.",)"
            R"("recipeCategory":"Soup","keywords":"Soup, Ham","recipeYield":"2.5 servings",)"
            R"("recipeIngredient":["1 lb Ham, cooked","Salt"],"tool":["Sieve","Pan"],)"
            R"("recipeInstructions":[{"@type":"HowToStep","text":"Boil."},)"
            R"({"@type":"HowToStep","text":"Serve."}],"aggregateRating":{)"
            R"("@type":"AggregateRating","ratingValue":4,"bestRating":5,"worstRating":1,)"
            R"("ratingCount":1,"ratingExplanation":"2 - Well received"}}</script>)"));
        const QByteArray bare = bytesOf(fixture.page(u"bare.html"_s));
        const QByteArray none = bytesOf(fixture.page(u"none.html"_s));
        const QByteArray worst = bytesOf(fixture.page(u"worst.html"_s));
        QVERIFY(!page.contains("Vegetarian") && bare.contains(">Vegetarian<"));
        QVERIFY(none.contains(">Vegetarian<")); // as in the recipe window
        QVERIFY(!jsonOf(none).contains(u"suitableForDiet"));
        QCOMPARE(jsonOf(bare)[u"keywords"].toString(), u"Dessert, Vegetarian"_s); // a seasoning
        QCOMPARE(jsonOf(bare)[u"recipeYield"].toString(), u"1 serving"_s);
        QCOMPARE(jsonOf(none)[u"aggregateRating"][u"ratingValue"], QJsonValue(5));
        for (const char *hidden : {"ating", "Utensils", ">Instructions", "\"author"})
            QVERIFY2(!bare.contains(hidden) && (!worst.contains(hidden) || *hidden == '>'), hidden);
        QVERIFY(!none.contains("ield\""));
    }

    void stepNumbers_data()
    {
        addRows<QByteArray, bool>({
            {"point", "1. Boil", true},
            {"parenthesis", "12) Boil", true},
            {"parentheses", "(1) Boil", true},
            {"colon", "1: boil", true},
            {"hyphen", "1 - Boil", true},
            {"no space", "1.Boil", true},
            {"number only", "Step 7.", true},
            {"word", "STEP 1 Boil", true},
            {"German", "Schritt 1: kochen", true},
            {"none", "Boil", false},
            {"word without a number", "Step back", false},
            {"longer word", "Stepwise", false},
            {"quantity", "2 cups of water", false},
            {"decimal", "1.5 l of water", false},
            {"range", "1 - 2 cups of water", false},
            {"temperature", "200 °C", false},
            {"year", "1984. A good year", false},
            {"hyphen of a list", "- 1 tsp salt", false},
            {"nothing", "", false},
        });
    }

    void stepNumbers()
    {
        const auto [paragraph, isNumbered] = fetchRow<QByteArray, bool>();
        QCOMPARE(beginsWithStepNumber(paragraph.toStdString()), isNumbered);
    }

    void themeColors_data()
    {
        addRows<PageStyle>({{"card", PageStyle::PlainCard}, {"cookbook", PageStyle::Cookbook}});
    }

    // The colours of the browser's bars and of the icon are those of the style.
    void themeColors()
    {
        ExportFixture fixture;
        std::tie(fixture.settings.style) = fetchRow<PageStyle>();
        addDishes(fixture.file, 1);
        QCOMPARE(fixture.run(), QString());
        const QByteArray style = bytesOf(fixture.page(u"style.css"_s));
        const QByteArray page = bytesOf(fixture.page(u"dish-0.html"_s));
        QCOMPARE(matches(page, "theme-color\" content=\"([^\"]*)"),
                 matches(style, "--(?:table|paper): (#[0-9a-f]{6});"));
        QCOMPARE(matches(page, "fill=&apos;%23([^&]*)").constFirst(),
                 matches(style, "--(?:red|accent): #([0-9a-f]{6});").constFirst());
    }

    void hostileText()
    {
        const QString hostile = u"</script><!--<b>&amp;\"' {{title}} \u202E"_s;
        ExportFixture fixture;
        fixture.file.write(QString(u"INSERT INTO Recipes SELECT 1, char(0,27,128)||t, t, t, 99, "
                                   "t||char(0,7,65534,10)||t, 'x', t FROM (SELECT '%1' AS t);"
                                   "INSERT INTO Recipes (RecipeName) VALUES (' '||char(9))"_s)
                               .arg(QString(hostile).replace(u'\'', u"''"_s)));
        QCOMPARE(fixture.run(), QString());
        QCOMPARE(fixture.progress.names.first(2), QStringList({hostile, u"Untitled recipe"_s}));

        static const QRegularExpression control(u"[^\\P{Cc}\\n\\t]|\\x{FFFE}"_s);
        for (const QString &name : fixture.pages()) {
            const QByteArray page = bytesOf(fixture.page(name));
            QVERIFY2(!QString::fromUtf8(page).contains(control), qPrintable(name));
            QCOMPARE(page.count("<b>") + page.count("<!--"), 0);
            QCOMPARE(page.count("</script>"), page.count("<script"));
        }
        const QByteArray page = bytesOf(fixture.page(fixture.pages().filter(u"script"_s).value(0)));
        QVERIFY(page.contains("<h1 lang=\"\" dir=\"auto\">&lt;/script&gt;&lt;!--"));
        QCOMPARE(jsonOf(page)[u"name"].toString(), hostile);
        QCOMPARE(jsonOf(page)[u"recipeInstructions"][1][u"text"].toString(), hostile);
        QCOMPARE(jsonOf(page)[u"recipeCategory"].toString(), u"Misc"_s);
    }

    void order()
    {
        ExportFixture fixture; // the default order is by type, then by title
        fixture.file.write(u"INSERT INTO Recipes (RecipeName, RecipeType) "
                           "VALUES ('b', 0), ('É', 2), ('a', 2), ('f', 0)"_s);
        QCOMPARE(fixture.run(), QString());
        const auto found = [&fixture](const QString &page, const char *pattern) {
            return matches(bytesOf(fixture.page(page)), pattern).join(u' ');
        };
        QCOMPARE(found(u"a.html"_s, "rel=\"(?:prev|next)\" href=\"(.)"), u"f e"_s);
        QCOMPARE(found(u"b.html"_s, "rel=\"(prev|next)"), u"next"_s);
        QCOMPARE(found(u"index.html"_s, "<h3[^>]*>([^<]*)"), u"A B E F"_s);
    }

    // Other programs can change the recipes, because the database is not locked while pages are
    // written.
    void changedWhileExporting()
    {
        ExportFixture fixture;
        addDishes(fixture.file, 300);
        fixture.progress.onProgress = [&] {
            if (fixture.progress.names.size() == 3)
                fixture.file.write(u"UPDATE Recipes SET Author = 'Ann'"_s);
        };
        QVERIFY(fixture.run().contains(u"Another program has changed the recipes"_s));
        QVERIFY(fixture.entries().isEmpty());
    }

    void badTemplates_data()
    {
        addRows<QByteArray, QString>({
            {"missing", {}, u"mine.html cannot be used. There is no"_s},
            {"blank", " \n", u"is empty"_s},
            {"Latin-1", "\xE9t\xE9", u"not UTF-8 text"_s},
            {"null character", QByteArray("a\0b", 3), u"not UTF-8 text"_s},
            {"too large", QByteArray((1 << 20) + 1, ' '), u"larger than 1 MiB"_s},
            {"tag is not closed", "\n{{", u"Line 2: A tag is not closed"_s},
            {"tag lacks a brace", "{{{jsonLd}}", u"A tag is not closed"_s},
            {"unknown field", "{{titel}}", u"no field \"titel\""_s},
            {"empty tag", "{{}}{{title}}", u"no field \"\""_s},
            {"implicit iterator", "{{.}}", u"no field \".\""_s},
            {"entry's field outside its list", "\n{{name}}",
             u"Line 2: There is no field \"name\" here, but within these sections: ingredients, "
             "utensils."_s},
            {"entry's field of another list", "{{#utensils}}{{amount}}{{/utensils}}",
             u"no field \"amount\" here"_s},
            {"entry's field without entries", "{{^utensils}}{{name}}{{/utensils}}",
             u"no field \"name\" here"_s},
            {"entry's field after its list", "{{#utensils}}{{name}}{{/utensils}}{{name}}",
             u"no field \"name\" here"_s},
            {"list as text", "{{ingredients}}", u"{{#ingredients}}"_s},
            {"link as text", "{{previous}}", u"{{#previous}}"_s},
            {"yes or no as text", "{{vegetarian}}", u"{{#vegetarian}}"_s},
            {"section is not closed", "\r\n\r\n{{#next}}{{title}}",
             u"Line 3: The section next is not closed"_s},
            {"section is not open", "{{/next}}", u"section next ends here, but it has not begun"_s},
            {"sections overlap", "{{#next}}{{#author}}{{/next}}{{/author}}",
             u"section next ends here"_s},
            {"section inside itself", "{{#next}}{{^next}}{{/next}}{{/next}}",
             u"section next is inside itself"_s},
            {"unescaped by braces", "{{{title}}}", u"field title between two braces"_s},
            {"unescaped by &", "{{& title}}", u"field title between two braces"_s},
            {"escaped JSON-LD", "{{jsonLd}}", u"field jsonLd between three braces"_s},
            {"partial", "{{>title}}", u"cannot include another"_s},
            {"delimiters", "{{=<% %>=}}<%title%>", u"Delimiters other than"_s},
        });
    }

    void badTemplates()
    {
        const auto [text, reason] = fetchRow<QByteArray, QString>();
        ExportFixture fixture;
        const QString path = fixture.settings.recipeTemplate = fixture.home.data(u"mine.html"_s);
        if (!text.isNull())
            setBytes(path, text);
        const QString message = fixture.run();
        QVERIFY2(message.contains(path) && message.contains(reason), qPrintable(message));
        QVERIFY(fixture.entries().isEmpty());
    }

    void goodTemplates_data()
    {
        addRows<QByteArray, QByteArray>({
            {"byte order mark and spaces", "\xEF\xBB\xBF{{ title }}", "A &amp; B"},
            {"inverted section", "{{^next}}last{{/next}}{{#next}}{{link}}{{/next}}", "last"},
            {"section of no field, comment", "{{#author}}by {{author}}{{/author}}{{! none }}", ""},
            {"list",
             "{{#ingredients}}{{#quantity}}{{quantity}} {{/quantity}}{{name}}.{{/ingredients}}",
             "1 &lt;cup&gt;, ground Salt.Salt."},
            {"amount and preparation",
             "{{#ingredients}}{{amount}}|{{name}}{{preparation}}.{{/ingredients}}",
             "1 &lt;cup&gt;|Salt, ground.|Salt."},
            {"numbers of steps", "{{#hasOwnNumbers}}numbered{{/hasOwnNumbers}}", "numbered"},
            {"description for search engines", "{{pageDescription}}",
             QByteArray("long ").repeated(31) + "long…"},
            {"line of a section", "a\r\n {{#next}}\r\nb\r\n{{/next}}\r\n{{! c }}\r\nd", "a\r\nd"},
            {"two tags on a line", "a\n{{#next}}{{/next}}\nb", "a\n\nb"},
            {"empty list and braces",
             "{{#hasUtensils}}a{{/hasUtensils}}{{^utensils}}none{{/utensils}}}}", "none}}"},
        });
    }

    void goodTemplates()
    {
        const auto [text, page] = fetchRow<QByteArray, QByteArray>();
        ExportFixture fixture;
        fixture.file.write(
            u"INSERT INTO Recipes (RecipeName, Instructions, Description) "
            "VALUES ('A & B', 'Mix:'||char(10)||'1. Boil', '%1');"
            "INSERT INTO Ingredients VALUES (1,'Salt',0,0,1);"
            "INSERT INTO RecipeIngredients VALUES (1,1,'1 <cup>, ground'),(1,1,'')"_s.arg(
                u"long "_s.repeated(40)));
        fixture.settings.recipeTemplate = fixture.home.data(u"mine.html"_s);
        setBytes(fixture.settings.recipeTemplate, text);
        QCOMPARE(fixture.run(), QString());
        QCOMPARE(bytesOf(fixture.page(fixture.pages().constFirst())), page);
    }

    void listTemplate_data()
    {
        addRows<QByteArray>({{"no pages of letters", ""},
                             {"no pages of a letter", "{{#letterPages}}{{link}}{{/letterPages}}"}});
    }

    // A template that does not link to all pages of a divided list gets all lines on one page.
    void listTemplate()
    {
        const auto [links] = fetchRow<QByteArray>();
        ExportFixture fixture;
        addDishes(fixture.file, 1500);
        fixture.settings.categoryTemplate = fixture.home.data(u"mine.html"_s);
        setBytes(fixture.settings.categoryTemplate, links + "{{#recipes}}{{title}}, {{/recipes}}");
        QCOMPARE(fixture.run(), QString());
        QCOMPARE(bytesOf(fixture.page(u"type_misc.html"_s)).count(','), 500);
        QCOMPARE(bytesOf(fixture.page(u"index.html"_s)).count(">Dish "), 1500);
        QCOMPARE(fixture.pages().filter(u"_"_s).join(u' '),
                 u"type_dip.html type_grains-bean-rice.html type_misc.html"_s);
    }

    void fields_data()
    {
        addRows<PageKind, int>({{"main menu", PageKind::MainMenu, 3},
                                {"recipe type", PageKind::Category, 4},
                                {"recipe", PageKind::Recipe, 5}});
    }

    // The fields that a page sets are those that its templates may use and that the section of the
    // document describes.
    void fields()
    {
        const auto [kind, section] = fetchRow<PageKind, int>();
        QSet<QString> known;
        collectPaths(templateFields(kind), {}, known);
        QSet<QString> set;
        collectSetPaths(kind, set);
        QCOMPARE(QStringList((set - known).values()), QStringList());
        QCOMPARE(QStringList((known - set).values()), QStringList());

        const QStringList sections = document().split(u"\n## "_s);
        // A field has a row in a table, or is described in the row of the field that it belongs to.
        for (const QString &path : known) {
            const QString names =
                path.section(u' ', 1).section(u'/', -2).replace(u'/', u"`[^|]*\\|.*`"_s);
            QVERIFY2((sections[2] + sections[section])
                         .contains(QRegularExpression(u"\n\\| [^|]*`%1`"_s.arg(names))),
                     qPrintable(path));
        }
    }

    void exampleInTheDocument()
    {
        ExportFixture fixture;
        fixture.settings.recipeTemplate = fixture.home.data(u"example.html"_s);
        const QString example = document().section(u"```html\n"_s, 1).section(u"```"_s, 0, 0);
        setBytes(fixture.settings.recipeTemplate, example.toUtf8());
        fixture.file.write(
            u"INSERT INTO Recipes (RecipeName, Instructions) VALUES ('Soup', 'Boil.')"_s);
        QCOMPARE(fixture.run(), QString());
        QCOMPARE(bytesOf(fixture.page(u"soup.html"_s)).count("\n<p"), 2); // the links, and Boil.
    }
};

QTEST_GUILESS_MAIN(tst_WebPages)
#include "tst_webpages.moc"
