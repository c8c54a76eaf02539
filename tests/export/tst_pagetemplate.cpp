#include "export/PageFields.h"
#include "support/ExportFixture.h"
#include "support/Rows.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

QString toString(QByteArrayView name)
{
    return QString::fromUtf8(name);
}

// Adds the paths of all fields, such as "types/link". mustache::data cannot list its fields, so the
// names that any page may have are tried.
void collectPaths(const kainjow::mustache::data &fields, const QString &prefix,
                  QSet<QString> &paths)
{
    if (fields.is_list()) {
        for (const kainjow::mustache::data &item : fields.list_value())
            collectPaths(item, prefix, paths);
    }
    for (const PageKind kind : {PageKind::MainMenu, PageKind::Category, PageKind::Recipe}) {
        for (const QByteArrayView name : knownFields(kind).names) {
            if (const auto *field = fields.get(toString(name).toStdString())) {
                paths += prefix + toString(name);
                collectPaths(*field, prefix + toString(name) + u'/', paths);
            }
        }
    }
}

// A page of each kind that has every field.
kainjow::mustache::data allFields(PageKind kind)
{
    const SiteMap site = siteMapOf({{1, u"A"_s, 0, {}}, {2, u"B"_s, 0, {}}, {3, u"C"_s, 1, {}}});
    RecipeDetails details;
    details.title = details.author = details.servings = details.ratingText = u"B"_s;
    details.description = details.utensils = details.instructions = {u"b"_s};
    details.ingredients = {{u"1"_s, u"b"_s}};
    if (kind == PageKind::MainMenu)
        return mainMenuFields(site);
    if (kind == PageKind::Category)
        return categoryFields(site, site.types.front());
    return recipeFields(site, 1, details);
}

const QString &document()
{
    static const QString text = QString::fromUtf8(bytesOf(QStringLiteral(TEMPLATES_DOCUMENT)));
    return text;
}

} // namespace

class tst_PageTemplate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
             "1 &lt;cup&gt; Salt.Salt."},
            {"empty list and braces",
             "{{#hasUtensils}}a{{/hasUtensils}}{{^utensils}}none{{/utensils}}}}", "none}}"},
        });
    }

    void goodTemplates()
    {
        const auto [text, page] = fetchRow<QByteArray, QByteArray>();
        ExportFixture fixture;
        fixture.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('A & B');"
                           "INSERT INTO Ingredients VALUES (1,'Salt',0,0,1);"
                           "INSERT INTO RecipeIngredients VALUES (1,1,'1 <cup>'),(1,1,'')"_s);
        fixture.settings.recipeTemplate = fixture.home.data(u"mine.html"_s);
        setBytes(fixture.settings.recipeTemplate, text);
        QCOMPARE(fixture.run(), QString());
        QCOMPARE(bytesOf(fixture.page(fixture.pages().constFirst())), page);
    }

    void fields_data()
    {
        addRows<PageKind, int, QString>(
            {{"main menu", PageKind::MainMenu, 3,
              u"stylesheet mainMenu count recipeCount hasRecipes "
              "types types/name types/link types/count types/recipeCount "
              "letters letters/letter letters/anchor letters/recipes "
              "letters/recipes/title letters/recipes/link"_s},
             {"recipe type", PageKind::Category, 4,
              u"stylesheet mainMenu name link count recipeCount "
              "recipes recipes/title recipes/link"_s},
             {"recipe", PageKind::Recipe, 5,
              u"stylesheet mainMenu title type typeLink author servings rating "
              "vegetarian hasDescription description description/paragraph "
              "hasIngredients ingredients ingredients/name ingredients/quantity "
              "hasUtensils utensils utensils/name "
              "hasInstructions instructions instructions/paragraph "
              "previous previous/title previous/link next next/title next/link "
              "jsonLd"_s}});
    }

    // The fields that a page sets are those that its templates may use and that the section of the
    // document describes.
    void fields()
    {
        const auto [kind, section, fields] = fetchRow<PageKind, int, QString>();
        QStringList paths = fields.split(u' ');
        QSet<QString> found;
        collectPaths(allFields(kind), {}, found);
        QStringList set(found.begin(), found.end());
        set.sort();
        paths.sort();
        QCOMPARE(set.join(u' '), paths.join(u' '));

        QSet<QString> names;
        for (const QString &path : paths)
            names += path.section(u'/', -1);
        QSet<QString> known;
        for (const QByteArrayView name : knownFields(kind).names)
            known += toString(name);
        QCOMPARE(known, names);

        const QStringList sections = document().split(u"\n## "_s);
        // A field has a row in a table, or is described in the row of the field that it belongs to.
        for (const QString &path : paths) {
            const QString names = path.section(u'/', -2).replace(u'/', u"`[^|]*\\|.*`"_s);
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
        QCOMPARE(bytesOf(fixture.page(u"soup.html"_s)).count("\n<p>"), 2); // the links, and Boil.
    }
};

QTEST_GUILESS_MAIN(tst_PageTemplate)
#include "tst_pagetemplate.moc"
