#include "export/PageFields.h"
#include "support/ExportFixture.h"

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
    const std::pair<QByteArray, QString> table[] = {
        {" \n", u"is empty"_s},
        {"\xE9t\xE9", u"no text in UTF-8"_s},
        {QByteArray("a\0b", 3), u"no text in UTF-8"_s},
        {QByteArray((1 << 20) + 1, ' '), u"larger than 1 MiB"_s},
        {"\n{{", u"Line 2: A tag is not closed"_s},
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
    ExportFixture stand;
    const QString path = stand.settings.recipeTemplate = stand.home.data(u"mine.html"_s);
    QVERIFY(stand.run().contains(u"recipe template %1 cannot be used. There is no"_s.arg(path)));
    for (const auto &[text, reason] : table) {
        setBytes(path, text);
        const QString told = stand.run();
        QVERIFY2(told.contains(path) && told.contains(reason), qPrintable(reason + u'\n' + told));
    }
    QVERIFY(stand.entries().isEmpty());
}

void TestPageTemplate::goodOnesAreFilledIn()
{
    const std::pair<const char *, QByteArray> table[] = {
        {"\xEF\xBB\xBF{{ title }}", "A &amp; B"},
        {"{{^next}}last{{/next}}{{#next}}{{link}}{{/next}}", "last"},
        {"{{#author}}by {{author}}{{/author}}{{! none }}", ""},
        {"{{#ingredients}}{{#quantity}}{{quantity}} {{/quantity}}{{name}}.{{/ingredients}}",
         "1 &lt;cup&gt; Salt.Salt."},
        {"{{#hasUtensils}}a{{/hasUtensils}}{{^utensils}}none{{/utensils}}}}", "none}}"},
    };
    ExportFixture stand;
    stand.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('A & B');"
                     "INSERT INTO Ingredients VALUES (1,'Salt',0,0,1);"
                     "INSERT INTO RecipeIngredients VALUES (1,1,'1 <cup>'),(1,1,'')"_s);
    stand.settings.recipeTemplate = stand.home.data(u"mine.html"_s);
    for (const auto &[text, expected] : table) {
        setBytes(stand.settings.recipeTemplate, text);
        QCOMPARE(stand.run(), QString());
        QCOMPARE(bytesOf(stand.page(stand.pages().constFirst())), expected);
    }
}

// Its example works, and it names every field.
void TestPageTemplate::theDocumentIsTrue()
{
    const QString document = QString::fromUtf8(bytesOf(QStringLiteral(TEMPLATES_DOCUMENT)));
    ExportFixture stand;
    stand.settings.recipeTemplate = stand.home.data(u"example.html"_s);
    const QString example = document.section(u"```html\n"_s, 1).section(u"```"_s, 0, 0);
    setBytes(stand.settings.recipeTemplate, example.toUtf8());
    stand.file.write(u"INSERT INTO Recipes (RecipeName, Instructions) VALUES ('Soup', 'Boil.')"_s);
    QCOMPARE(stand.run(), QString());
    QCOMPARE(bytesOf(stand.page(u"soup.html"_s)).count("\n<p>"), 2); // up, and Boil.

    const QStringList sections = document.split(u"\n## "_s);
    for (const auto &[kind, section] :
         {std::pair(PageKind::MainMenu, 3), {PageKind::Category, 4}, {PageKind::Recipe, 5}}) {
        for (const std::string_view name : knownFields(kind).names) {
            const QString quoted = u'`' + QString::fromUtf8(name.data(), std::ssize(name)) + u'`';
            QVERIFY2((sections[2] + sections[section]).contains(quoted), qPrintable(quoted));
        }
    }
}

QTEST_GUILESS_MAIN(TestPageTemplate)
#include "tst_pagetemplate.moc"
