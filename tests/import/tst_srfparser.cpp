#include "SrfDecoder.h"
#include "SrfParser.h"

#include <QDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestSrfParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsGoodFiles_data();
    void readsGoodFiles();
    void complainsOfBadFiles_data();
    void complainsOfBadFiles();
    void takesANewIngredientApart_data();
    void takesANewIngredientApart();
    void decodes_data();
    void decodes();
};

namespace {

const QByteArray wholeFile = "Family cookbook\r\nPasta with butter\r\nA. Cook\r\n2\r\n4\r\n"
                             "Quick weekday dish\r\n<Instructions>\r\nBoil the pasta.\r\n"
                             "Toss with butter.\r\n</Instructions>\r\n<Ingredients>\r\n"
                             "Pasta|9|365|True||1 lb\r\nButter|7|30|True||2 tbsp\r\n"
                             "</Ingredients>\r\n<Utensils>\r\nLarge pot\r\n</Utensils>\r\n";

// The file above with one place changed, as a person would edit it.
QByteArray with(const QByteArray &before, const QByteArray &after, QByteArray file = wholeFile)
{
    Q_ASSERT(file.count(before) == 1);
    return file.replace(before, after);
}

// A heading of six lines and three empty sections but for what is given; lines end in CR.
QByteArray file(const QByteArray &instructions, const QByteArray &ingredients = {},
                const QByteArray &utensils = {})
{
    return "\rN\rA\r1\r2\rD\r<Instructions>\r" + instructions + "</Instructions>\r<Ingredients>\r"
        + ingredients + "</Ingredients>\r<Utensils>\r" + utensils + "</Utensils>\r";
}

// Everything read, one thing a line: the heading, the instructions, "line name = quantity" of each
// ingredient and "line name" of each utensil.
QString shown(const SrfRecipe &recipe)
{
    QStringList all{
        QStringList{recipe.name, recipe.author, recipe.type, recipe.serves, recipe.description}
            .join(u'/'),
        recipe.instructions};
    for (const SrfIngredient &each : recipe.ingredients)
        all += u"%1 %2 = %3"_s.arg(QString::number(each.line), each.name, each.quantity);
    for (const SrfUtensil &each : recipe.utensils)
        all += u"%1 %2"_s.arg(QString::number(each.line), each.name);
    return all.join(u'\n').replace("\r\n"_L1, "~"_L1);
}

const QString wholeShown = u"Pasta with butter/A. Cook/2/4/Quick weekday dish\n"
                           "Boil the pasta.~Toss with butter.~\n"
                           "12 Pasta = 1 lb\n13 Butter = 2 tbsp\n16 Large pot"_s;

} // namespace

void TestSrfParser::readsGoodFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &bytes, const QString &expected) {
        QTest::newRow(name) << bytes << expected;
    };
    const auto withInstructions = [&row](const char *name, const QByteArray &bytes,
                                         const QString &expected) {
        row(name, file(bytes), u"N/A/1/2/D\n"_s + expected);
    };
    const auto withEntries = [&row](const char *name, const QByteArray &ingredients,
                                    const QByteArray &utensils, const QString &expected) {
        row(name, file({}, ingredients, utensils), u"N/A/1/2/D\n\n"_s + expected);
    };

    row("whole file", wholeFile, wholeShown);
    row("CR alone", QByteArray(wholeFile).replace("\r\n", "\r"), wholeShown);
    row("no last line end", wholeFile.chopped(2), wholeShown);
    row("byte order mark", "\xEF\xBB\xBF" + wholeFile, wholeShown);
    row("lines skipped between the sections",
        with("</Ingredients>\r\n", "</Ingredients>\r\n\r\n</Utensils>\r\n|\r\n",
             with("\r\n<Ingr", "\r\n\r\nn|o||\r\n<ingredients>\r\n<Ingr",
                  with("dish\r\n", "dish\r\n\r\n</Instructions>\r\n"))),
        QString(wholeShown)
            .replace("12 P"_L1, "17 P"_L1)
            .replace("13 B"_L1, "18 B"_L1)
            .replace("16 L"_L1, "24 L"_L1));
    row("text after the last tag", wholeFile + "\r\n||\r\n<Utensils>\r\n\r\n", wholeShown);
    row("names and heading as they stand", with("Pasta with", " |Pasta\t\"with\n", wholeFile),
        QString(wholeShown).replace("Pasta with"_L1, " |Pasta\t\"with\n"_L1));
    row("Windows-1252", with("Pasta with", "P\xE2t\xE9 \x80\x96", wholeFile),
        QString(wholeShown).replace("Pasta with"_L1, u"Pâté €–"_s));

    withInstructions("empty sections", "", u""_s);
    withInstructions("blank line between two", "a\r\rb\r", u"a~~~~b~"_s);
    withInstructions("line of spaces alone", "a\r   \r", u"a~~~~"_s);
    withInstructions("line of a tab is not blank", "\t\r", u"\t~"_s);
    withInstructions("LF alone ends no line", "a\n\r b\n \r\n", u"a\n~ b\n ~"_s);
    withInstructions("tags followed by a blank",
                     "</Instructions> \r </Instructions>\r</instructions>\r<Ingredients>\r",
                     u"</Instructions> ~ </Instructions>~</instructions>~<Ingredients>~"_s);

    withEntries("separators in the quantity", "a b|1|2|True||1|2||3\r", "", u"10 a b = 1|2||3"_s);
    withEntries("quantity set off at the first doubled separator", "Salt|3|999|True|||1\r", "",
                u"10 Salt = |1"_s);
    withEntries("fifth field before the quantity", "Salt|3|999|True|x||1\r", "", u"10 Salt = 1"_s);
    withEntries("fields that only a new ingredient needs", "Salt||1 tsp\rOil|||\r", "",
                u"10 Salt = 1 tsp\n11 Oil = |"_s);
    withEntries("parentheses, an empty quantity",
                "Flour|9|180|True||2 1/2 cup (sifted)\rEgg (raw)|1|2|0||\r", "",
                u"10 Flour = 2 1/2 cup (sifted)\n11 Egg (raw) = "_s);
    withEntries("the same twice", "a|1|1|1||1\ra|1|1|1||2\r", " pot \rpot\r pot \r",
                u"10 a = 1\n11 a = 2\n14  pot \n15 pot\n16  pot "_s);
}

void TestSrfParser::readsGoodFiles()
{
    QFETCH(QByteArray, bytes);
    const auto result = parseSrf(decodeSrf(bytes));
    if (const auto *complaint = std::get_if<SrfComplaint>(&result))
        QFAIL(qPrintable(complaintText(*complaint, u"f"_s)));
    QTEST(shown(std::get<SrfRecipe>(result)), "expected");
}

void TestSrfParser::complainsOfBadFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("phrase");
    const auto row = [](const char *name, const QByteArray &bytes, int line,
                        const QString &phrase) { QTest::newRow(name) << bytes << line << phrase; };
    // The whole file's first lines.
    const auto upTo = [](int line) {
        return QByteArrayList(wholeFile.split('\r').mid(0, line)).join('\r');
    };
    const QString entry = u"expected an ingredient as name|type|shelf life|vegetarian||quantity, "
                          "or the line \"</Ingredients>\", found "_s;
    const QString longName = u"\U0001F35D"_s.repeated(100);

    row("no byte", "", 1, u"a first line with any text, found the end of the file."_s);
    row("first line alone", upTo(1), 2, u"the name of the recipe, found the end of the file."_s);
    row("no author", upTo(2), 3, u"the author, found the end"_s);
    row("no type", upTo(3), 4, u"the number of the recipe's type, found the end"_s);
    row("no servings", upTo(4) + '\r', 5, u"the number of servings, found the end"_s);
    row("no description", upTo(5), 6, u"the description, found the end"_s);
    row("no instructions", upTo(6), 7,
        u"the line \"<Instructions>\" somewhere from line 7 on, found the end"_s);
    row("tag and blank", with("<Instructions>", "<Instructions> "), 18,
        u"the line \"<Instructions>\" somewhere from line 7 on, found the end"_s);
    row("tag in small letters", with("</Instructions>", "</instructions>"), 18,
        u"the line \"</Instructions>\" somewhere from line 8 on, found the end"_s);
    row("no ingredients", with("<Ingredients>\r\n", ""), 17,
        u"the line \"<Ingredients>\" somewhere from line 11 on, found the end"_s);
    row("no end of the ingredients", with("</Ingredients>\r\n", ""), 14,
        entry + u"\"<Utensils>\"."_s);
    row("no utensils", upTo(14), 15, u"the line \"<Utensils>\" somewhere from line 15 on, "_s);
    row("no end of the utensils", upTo(16), 17,
        u"the line \"</Utensils>\" somewhere from line 16 on, "_s);
    row("empty recipe name", with("Pasta with butter", ""), 2,
        u"the name of the recipe, found nothing."_s);
    row("entry without separators", file({}, "Salt\r"), 10, entry + u"\"Salt\"."_s);
    row("entry without doubled separator", file({}, "a||\rSalt|3|9|True|1\r"), 11,
        entry + u"\"Salt|3|9|True|1\"."_s);
    row("empty line among the entries", file({}, "\r"), 10, entry + u"nothing."_s);
    row("empty ingredient name", file({}, "|3|9|True||1\r"), 10,
        u"the name of an ingredient before the first |, found \"|3|9|True||1\"."_s);
    row("empty utensil name", file({}, {}, "pot\r\rpan\r"), 13,
        u"the name of a utensil, or the line \"</Utensils>\", found nothing."_s);
    const QByteArray zero("a\0\t\x7F", 4);
    const QString zeroFound = u"a name without a zero character, found \"a\u2400\u2409<U+007F>"_s;
    row("zero in the recipe's name", with("Pasta with butter", zero), 2, zeroFound);
    row("zero in an ingredient", file({}, zero + "||\r"), 10, zeroFound);
    row("zero in a utensil", file({}, {}, zero + '\r'), 12, zeroFound);
    row("line feed and turned direction", file({}, "a\n\xE2\x80\xAE|\r"), 10,
        entry + u"\"a\u240A<U+202E>|\"."_s);
    row("long line, cut between characters", file({}, "a" + longName.toUtf8() + '\r'), 10,
        entry + u"\"a"_s + longName.left(78) + u"...\"."_s);
    row("line feeds alone", QByteArray(wholeFile).replace("\r\n", "\n"), 1,
        u"Its lines end in a line feed alone."_s);
    row("line feeds but for one",
        QByteArray(wholeFile).replace("\r\n", "\n").replace("Cook\n", "Cook\r"), 3,
        u"found the end"_s);
}

void TestSrfParser::complainsOfBadFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, phrase);
    const auto result = parseSrf(decodeSrf(bytes));
    const auto *complaint = std::get_if<SrfComplaint>(&result);
    QVERIFY(complaint);
    QTEST(complaint->line, "line");
    const QString path = u"/cards/100%1 %2/Soup.srf"_s;
    const QString text = complaintText(*complaint, path);
    QVERIFY2(text.contains(phrase), qPrintable(text));
    QVERIFY2(text.startsWith(QDir::toNativeSeparators(path)), qPrintable(text));
    QCOMPARE(text.contains(u"Line %1: expected "_s.arg(complaint->line)),
             complaint->kind != SrfComplaint::Kind::LineFeeds);
}

void TestSrfParser::takesANewIngredientApart_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QString>("expected");
    QTest::newRow("all fields") << QByteArray("Salt|3|999|True||1|2") << u"3/999/True"_s;
    QTest::newRow("as they stand") << QByteArray("Salt| 3|x| |y||") << u" 3/x/ "_s;
    QTest::newRow("no field") << QByteArray("Salt||1 tsp") << u"10 the type"_s;
    QTest::newRow("no type") << QByteArray("Salt||9|True||1") << u"10 the type"_s;
    QTest::newRow("no shelf life") << QByteArray("Salt|3||True||1") << u"10 the shelf life"_s;
    QTest::newRow("type alone") << QByteArray("Salt|3||1") << u"10 the shelf life"_s;
    QTest::newRow("no vegetarian") << QByteArray("Salt|3|9|||1") << u"10 True or False"_s;
}

void TestSrfParser::takesANewIngredientApart()
{
    QFETCH(QByteArray, entry);
    QFETCH(QString, expected);
    const auto recipe = std::get<SrfRecipe>(parseSrf(decodeSrf(file({}, entry + '\r'))));
    const auto result = newIngredient(recipe.ingredients.at(0));
    if (const auto *fields = std::get_if<SrfNewIngredient>(&result)) {
        QCOMPARE(QStringList({fields->type, fields->shelfLife, fields->vegetarian}).join(u'/'),
                 expected);
        return;
    }
    const auto &complaint = std::get<SrfComplaint>(result);
    QCOMPARE(u"%1 %2"_s.arg(complaint.line).arg(complaint.expected).left(expected.size()),
             expected);
    QCOMPARE(complaint.found, QString::fromLatin1(entry));
}

void TestSrfParser::decodes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &bytes, const QString &expected) {
        QTest::newRow(name) << bytes << expected;
    };
    row("four bytes a character", "\xF0\x9F\x8D\x9D\0"_ba, u"\U0001F35D\0"_s);
    row("one byte order mark of two", "\xEF\xBB\xBF\xEF\xBB\xBF", u"\uFEFF"_s);
    row("cut short", "\xC3\xA9\xC3", u"\u00C3\u00A9\u00C3"_s);
    row("overlong", "\xC0\xAF", u"\u00C0\u00AF"_s);
    row("surrogate", "\xED\xA0\x80", u"\u00ED\u00A0\u20AC"_s);
    row("beyond the last character", "\xF4\x90\x80\x80", u"\u00F4\u0090\u20AC\u20AC"_s);
    row("unused bytes", "\x81\x8D\x8F\x90\x9D", u"\u0081\u008D\u008F\u0090\u009D"_s);
    row("from 80 on", "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E", u"€‚ƒ„…†‡ˆ‰Š‹ŒŽ"_s);
    row("from 91 on", "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F\xA0\xFF",
        u"‘’“”•–—˜™š›œžŸ\u00A0ÿ"_s);
}

void TestSrfParser::decodes()
{
    QFETCH(QByteArray, bytes);
    QTEST(decodeSrf(bytes), "expected");
}

QTEST_GUILESS_MAIN(TestSrfParser)
#include "tst_srfparser.moc"
