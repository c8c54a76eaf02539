#include "export/DividedList.h"
#include "export/SearchFile.h"
#include "export/TitleLetters.h"
#include "support/Rows.h"

#include <QRegularExpression>
#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace {

SiteMap siteOf(const QStringList &titles)
{
    SiteContents contents;
    for (const QString &title : titles)
        contents.recipes.push_back({std::ssize(contents.recipes) + 1, title.toStdString()});
    return siteMapOf(std::move(contents));
}

QStringList numbered(const QString &title, int count)
{
    QStringList titles;
    for (int i = 0; i < count; ++i)
        titles += title.arg(i, 4);
    return titles;
}

// Returns for example "A 2 B 1": the headings with the numbers of their lines.
QString headings(const std::vector<LetterLines> &letters)
{
    QStringList texts;
    for (const LetterLines &letter : letters)
        texts +=
            QString::fromStdString(letter.heading()) + u' ' + QString::number(letter.lines.size());
    return texts.join(u' ');
}

} // namespace

class tst_ListPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letters_data()
    {
        addRows<QString, QString>({
            {"lower case", u"soup"_s, u"S"_s},
            {"accent", u"Éclair"_s, u"E"_s},
            {"combining accent", u"E\u0301clair"_s, u"E"_s},
            {"stroke", u"Łazanki"_s, u"L"_s},
            {"ligature", u"Æbleskiver"_s, u"A"_s},
            {"sharp s", u"ß"_s, u"S"_s},
            {"quotation mark", u"\"Best\" Soup"_s, u"B"_s},
            {"marks of other languages", u" «¿„‘(Soup"_s, u"S"_s},
            {"direction mark", u"\u200FSoup"_s, u"S"_s},
            {"only marks", u"(\"\")"_s, u""_s},
            {"digit", u"7 Up Cake"_s, u""_s},
            {"hyphen", u"- Soup"_s, u""_s},
            {"emoji", u"🍲 Soup"_s, u""_s},
            {"other script", u"ёлка"_s, u"Е"_s},
            {"without case", u"חומוס"_s, u"ח"_s},
            {"beyond 16 bits", u"𐐨"_s, u"𐐀"_s},
            {"empty", u""_s, u""_s},
        });
    }

    void letters()
    {
        const auto [title, letter] = fetchRow<QString, QString>();
        const char32_t found = titleLetter(title);
        QCOMPARE(found == 0 ? QString() : QString::fromUcs4(&found, 1), letter);
    }

    void order_data()
    {
        QStringList chinese;
        for (char16_t i = 0; i < 20; ++i)
            chinese += QString(QChar(char16_t(u'一' + i)));
        addRows<QStringList, QString>({
            {"accents", {u"Eb"_s, u"Éa"_s, u"Ea"_s, u"Ëc"_s}, u"Ea Éa Eb Ëc: E 4"_s},
            {"marks", {u"Bb"_s, u"\"Ba\""_s, u"(Bc)"_s}, u"\"Ba\" Bb (Bc): B 3"_s},
            {"without letters", {u"♥"_s, u"я"_s, u"A"_s, u"1"_s}, u"1 ♥ A я: # 2 A 1 Я 1"_s},
            {"few Chinese", {u"一"_s, u"A"_s, u"二"_s}, u"A 一 二: A 1 一 1 二 1"_s},
            {"many Chinese", chinese + QStringList{u"한"_s, u"丁丁"_s},
             u"한 一 丁 丁丁 "_s + chinese.sliced(2).join(u' ') + u": ᄒ 1 漢字 21"_s},
        });
    }

    void order()
    {
        const auto [titles, expected] = fetchRow<QStringList, QString>();
        const SiteMap site = siteOf(titles);
        const SiteList list = allRecipes(site);
        QStringList sorted;
        for (const ListLine &line : list.lines)
            sorted += QString::fromUtf8(line.title.data(), std::ssize(line.title));
        QCOMPARE(sorted.join(u' ') + u": "_s + headings(linesByLetter(list.lines)), expected);
    }

    void parts_data()
    {
        const QString title = u"Soup %1 "_s + u"a"_s.repeated(70); // three lines on a phone
        addRows<QStringList, QString>({
            {"one page", numbered(u"Soup %1"_s, 400), u""_s},
            {"by letter", numbered(u"Soup %1"_s, 400) + QStringList{u"7"_s, u"Ж"_s},
             u"letter_other 1, letter_s 400, letter_u416 1"_s},
            {"long letter", numbered(u"Soup %1"_s, 801),
             u"letter_s 400 S, letter_s_2 400 Soup  4, letter_s_3 1 Soup  8"_s},
            {"long titles", numbered(title, 300), u"letter_s 266 S, letter_s_2 34 Soup  266"_s},
            {"same titles", QStringList(401, u"Soup"_s), u"letter_s 400 S, letter_s_2 1 Soup"_s},
        });
    }

    void parts()
    {
        const auto [titles, expected] = fetchRow<QStringList, QString>();
        const SiteMap site = siteOf(titles);
        const SiteList list = allRecipes(site);
        QStringList parts;
        const DividedList divided = divide(list, true);
        for (const ListPart &part : divided.parts)
            parts += QString::fromStdString(part.page).section(u'.', 0, 0) + u' '
                + QString::number(part.lines.size())
                + QString::fromStdString(part.start.empty() ? "" : ' ' + part.start);
        QCOMPARE(parts.join(u", "), expected);
        QVERIFY(divide(list, false).parts.empty());
    }

    // Whatever recipes and catalog entries are called, their pages have different names, also where
    // case does not count.
    void pageNames()
    {
        const std::vector<std::string> names{"",       " ",    "index", "Index",        "!!!",
                                             "?",      "Salt", "salt",  "all",          "Letter",
                                             "Letter", "CON",  "漢字",  "ingredient_1", "type"};
        SiteContents contents;
        for (const std::string &name : names) {
            const qint64 key = std::ssize(contents.recipes) + 1;
            contents.recipes.push_back({key, name});
            contents.ingredients.push_back({.key = key, .name = name, .recipes = {0, 2, 0}});
            contents.utensils.push_back({.key = key, .name = name, .recipes = {0}});
        }
        const SiteMap site = siteMapOf(std::move(contents));
        QCOMPARE(site.ingredients.front().recipes.size(), 2U);
        QCOMPARE(site.ingredient(7)->page, std::string("ingredient_salt.html"));
        QSet<std::string> pages;
        std::size_t count = 0;
        const auto add = [&](const std::string &page) {
            static const QRegularExpression valid(u"\\A[a-z0-9_-]{1,90}\\.html\\z"_s);
            QVERIFY2(valid.match(QString::fromStdString(page)).hasMatch(), page.c_str());
            pages.insert(page);
            ++count;
        };
        for (const RecipeEntry &recipe : site.recipes)
            add(recipe.page);
        QVERIFY(forEachList(site, [&](const SiteList &list) {
            add(list.page);
            return !list.name.empty();
        }));
        QCOMPARE(pages.size(), count);
        QCOMPARE(count, 3 * names.size() + 4); // also the type, and all ingredients and utensils
    }

    void searchLines_data()
    {
        addRows<QString, QString>({
            {"plain", u"Autumn Soup"_s, u"Autumn Soup\t"_s},
            {"accents", u"Crème’s “Łódź”"_s, u"Crème’s “Łódź”\t_.{10}"_s},
            {"other script", u"борщ"_s, u"борщ\t=recipe_.{10}"_s},
            {"script", u"</script>`${a}\\"_s, u"\\\\x3c/script>\\\\`\\\\\\${a}\\\\\\\\\t_.{10}"_s},
            {"long", u"ab "_s.repeated(60), u"(ab ){27}ab…\t_.{10}"_s},
            {"long, other script", u"борщ"_s.repeated(60), u"(борщ)+б?о?р?…\t=recipe_.{10}"_s},
        });
    }

    void searchLines()
    {
        const auto [title, expected] = fetchRow<QString, QString>();
        const SiteMap site = siteOf({title});
        const QString file = QString::fromStdString(searchFile(site, true));
        const QString line = file.section(u'\n', 0, 0).mid(file.indexOf(u'`') + 1);
        QVERIFY2(QRegularExpression(u"\\A"_s + expected + u"\\z"_s).match(line).hasMatch(),
                 qPrintable(line));
        QVERIFY(line.toUtf8().size() < 100);
        QVERIFY(searchFile(site, false).find(line.toStdString()) == std::string::npos);
    }
};

QTEST_APPLESS_MAIN(tst_ListPages)
#include "tst_listpages.moc"
