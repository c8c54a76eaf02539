#include "ExportStand.h"
#include "PageFields.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestPageTemplate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void brokenOnesAreNamed();
    void goodOnesAreFilledIn();
    void theDocumentIsTrue();
};

void TestPageTemplate::brokenOnesAreNamed()
{
    const struct {
        QByteArray text;
        QString reason;
    } table[] = {
        {" \n", u"is empty"_s},
        {"\xE9t\xE9", u"no text in UTF-8"_s},
        {QByteArray("a\0b", 3), u"no text in UTF-8"_s},
        {QByteArray((1 << 20) + 1, ' '), u"larger than 1 MiB"_s},
        {"\n{{", u"Line 2: A tag is not closed"_s},
        {"{{title", u"Line 1: A tag is not closed"_s},
        {"{{{jsonLd}}", u"A tag is not closed"_s},
        {"{{titel}}", u"no field \"titel\""_s},
        {"{{}}{{title}}", u"no field \"\""_s},
        {"{{.}}", u"no field \".\""_s},
        {"\r\n\r\n{{#next}}{{title}}", u"Line 3: The section next is not closed"_s},
        {"{{/next}}", u"ends a section next that has not begun"_s},
        {"{{#next}}{{#author}}{{/next}}{{/author}}", u"ends a section next"_s},
        {"{{#next}}{{^next}}{{/next}}{{/next}}", u"section next lies within itself"_s},
        {"{{{title}}}", u"field title stands between two braces"_s},
        {"{{& title}}", u"field title stands between two braces"_s},
        {"{{jsonLd}}", u"field jsonLd stands between three braces"_s},
        {"{{>title}}", u"cannot take in another"_s},
        {"{{=<% %>=}}<%title%>", u"Other delimiters"_s},
    };
    ExportStand stand;
    stand.run();
    const QByteArray before = bytesOf(stand.page(u"index.html"_s));
    const QString path = stand.settings.recipeTemplate = stand.home.data(u"mine.html"_s);
    QVERIFY(stand.failure().contains("recipe template "_L1 + path));
    QVERIFY(stand.failure().contains(u"no such file"_s));
    for (const auto &[text, reason] : table) {
        setBytes(path, text);
        const QString told = stand.failure();
        QVERIFY2(told.contains(path) && told.contains(reason), qPrintable(reason + u'\n' + told));
    }
    QCOMPARE(bytesOf(stand.page(u"index.html"_s)), before);
    QCOMPARE(stand.entries(), QStringList{u"Pantrywise"_s});
}

void TestPageTemplate::goodOnesAreFilledIn()
{
    const struct {
        const char *text;
        QByteArray page;
    } table[] = {
        {"\xEF\xBB\xBF{{ title }}", "A &amp; B"},
        {"{{^next}}last{{/next}}{{#next}}{{link}}{{/next}}", "last"},
        {"{{#author}}by {{author}}{{/author}}{{! none }}", ""},
        {"{{#ingredients}}{{#quantity}}{{quantity}} {{/quantity}}{{name}}.{{/ingredients}}",
         "1 &lt;cup&gt; Salt.Salt."},
        {"{{#hasUtensils}}a{{/hasUtensils}}{{^utensils}}none{{/utensils}}}}", "none}}"},
        {"<b\xC3\xA9>{ {{servings}}%", "<b\xC3\xA9>{ 4%"},
    };
    ExportStand stand;
    stand.file.write(u"INSERT INTO Recipes (RecipeName, Serves) VALUES ('A & B', 4);"
                     "INSERT INTO Ingredients VALUES (1,'Salt',0,0,1);"
                     "INSERT INTO RecipeIngredients VALUES (1,1,'1 <cup>'),(1,1,'')"_s);
    stand.settings.recipeTemplate = stand.home.data(u"mine.html"_s);
    stand.run();
    for (const auto &[text, expected] : table) {
        setBytes(stand.settings.recipeTemplate, text);
        QCOMPARE(stand.failure(), QString());
        QCOMPARE(bytesOf(stand.page(stand.entries(u"Pantrywise"_s).constFirst())), expected);
    }
}

// Its example works, and it names every field and no other.
void TestPageTemplate::theDocumentIsTrue()
{
    const QString document = QString::fromUtf8(bytesOf(QStringLiteral(TEMPLATES_DOCUMENT)));
    ExportStand stand;
    stand.settings.recipeTemplate = stand.home.data(u"example.html"_s);
    const QString example = document.section(u"```html\n"_s, 1).section(u"```"_s, 0, 0);
    QVERIFY(!example.isEmpty());
    setBytes(stand.settings.recipeTemplate, example.toUtf8());
    stand.file.write(u"INSERT INTO Recipes (RecipeName, Instructions) VALUES ('Soup', 'Boil.')"_s);
    QCOMPARE(stand.failure(), QString());
    QVERIFY(bytesOf(stand.page(u"soup.html"_s)).contains("\n<p>Boil.</p>\n</body>"));

    const QString common = document.section(u"## "_s, 2, 2);
    QStringList sections = document.section(u"## "_s, 3, 5).split(u"## "_s);
    for (const PageKind kind : {PageKind::MainMenu, PageKind::Category, PageKind::Recipe}) {
        const QString described = common + sections.takeFirst();
        for (const std::string_view name : knownFields(kind).names) {
            const QString quoted = u"`%1`"_s.arg(QLatin1StringView(name.data(), name.size()));
            QVERIFY2(described.contains(quoted), qPrintable(quoted));
        }
    }
}

QTEST_GUILESS_MAIN(TestPageTemplate)
#include "tst_pagetemplate.moc"
