#include "SrfDecoder.h"
#include "SrfParser.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestSrfParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsGoodFiles();
    void complainsOfBadFiles();
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

// What a new ingredient takes from its entry, or what is missing there.
QString shownAsNew(const SrfIngredient &ingredient)
{
    const auto result = newIngredient(ingredient);
    if (const auto *complaint = std::get_if<SrfComplaint>(&result))
        return complaint->found == ingredient.entry && complaint->line == ingredient.line
            ? u"no "_s + complaint->expected.section(u' ', 0, 1)
            : u"another line"_s;
    const auto &fields = std::get<SrfNewIngredient>(result);
    return QStringList{fields.type, fields.shelfLife, fields.vegetarian}.join(u'/');
}

// Everything read, one thing a line, with the number of the line where it counts.
QString shown(const SrfRecipe &recipe)
{
    const QStringList heading{recipe.name, recipe.author, recipe.type, recipe.serves,
                              recipe.description};
    QStringList all{heading.join(u'/'), recipe.instructions};
    for (const SrfIngredient &each : recipe.ingredients)
        all += u"%1 %2 (%3) %4"_s.arg(QString::number(each.line), each.quantity, shownAsNew(each),
                                      each.name);
    for (const SrfUtensil &each : recipe.utensils)
        all += u"%1 %2"_s.arg(QString::number(each.line), each.name);
    return all.join(u'\n').replace("\r\n"_L1, "~"_L1);
}

// What is shown of the whole file where it begins with this name.
QString wholeShown(const QString &name = u"Pasta with butter"_s)
{
    return name
        + u"/A. Cook/2/4/Quick weekday dish\nBoil the pasta.~Toss with butter.~\n"
          "12 1 lb (9/365/True) Pasta\n13 2 tbsp (7/30/True) Butter\n16 Large pot"_s;
}

} // namespace

void TestSrfParser::readsGoodFiles()
{
    const QString heading = u"N/A/1/2/D\n"_s;
    const QString entries = heading + u'\n';
    const struct {
        const char *name;
        QByteArray bytes;
        QString expected;
    } table[] = {
        {"whole file", wholeFile, wholeShown()},
        {"CR alone", QByteArray(wholeFile).replace("\r\n", "\r"), wholeShown()},
        {"no last line end", wholeFile.chopped(2), wholeShown()},
        {"text after the last tag", wholeFile + "\r\n||\r\n<Utensils>\r\n\r\n", wholeShown()},
        {"UTF-8", with("Pasta with butter", "P\xC3\xA2t\xC3\xA9"), wholeShown(u"Pâté"_s)},
        {"Windows-1252", with("Pasta with butter", "P\xE2t\xE9 \x80"), wholeShown(u"Pâté €"_s)},
        {"name as it stands", with("Pasta with butter", " |'\t\"\n"), wholeShown(u" |'\t\"\n"_s)},
        {"lines skipped between the sections",
         "\rN\rA\r1\r2\rD\r\r</Instructions>\r<Instructions>\r</Instructions>\r\rn|o||\r"
         "<ingredients>\r<Ingredients>\r</Ingredients>\r</Utensils>\r<Utensils>\rpot\r</"
         "Utensils>\r",
         heading + u"\n18 pot"_s},
        {"blank line of spaces, not of a tab", file("a\r   \r\t\r"), heading + u"a~~~~\t~"_s},
        {"LF alone ends no line", file("a\n\r b\n \r\n\nc\r"), heading + u"a\n~ b\n ~\nc~"_s},
        {"tags with blanks or in small letters",
         file("</Instructions> \r </Instructions>\r</instructions>\r"),
         heading + u"</Instructions> ~ </Instructions>~</instructions>~"_s},
        {"quantities as they stand",
         file({}, "A b|1|2| 0||2 1/2 (x)\rA|1|2|3||1|2||3\rA|1|2|3|||1\rA (raw)|1|2|3||\r"),
         entries
             + u"10 2 1/2 (x) (1/2/ 0) A b\n11 1|2||3 (1/2/3) A\n12 |1 (1/2/3) A\n"
               "13  (1/2/3) A (raw)"_s},
        {"a field too many", file({}, "A|1|2|3|x||q\r"), entries + u"10 q (1/2/3) A"_s},
        {"fields too few", file({}, "A||2|3||q\rA|1||3||q\rA|1|2||q\r"),
         entries + u"10 2|3||q (no the type) A\n11 3||q (no the shelf) A\n12 q (no True or) A"_s},
        {"utensils as they stand", file({}, {}, " pot \rpot\rpot|1\r"),
         entries + u"12  pot \n13 pot\n14 pot|1"_s},
    };
    for (const auto &[name, bytes, expected] : table) {
        const auto result = parseSrf(decodeSrf(bytes));
        const auto *recipe = std::get_if<SrfRecipe>(&result);
        QVERIFY2(recipe && shown(*recipe) == expected, name);
    }
}

void TestSrfParser::complainsOfBadFiles()
{
    // The whole file's first lines.
    const auto upTo = [](int line) {
        return QByteArrayList(wholeFile.split('\r').mid(0, line)).join('\r');
    };
    const QString entry = u"expected an ingredient as name|type|shelf life|vegetarian||quantity, "
                          "or the line \"</Ingredients>\", found "_s;
    const QString longName = u"\U0001F35D"_s.repeated(100);

    const QByteArray zero("a\0\t\x7F", 4);
    const QString zeroFound = u"a name without a zero character, found \"a\u2400\u2409<U+007F>"_s;
    const struct {
        const char *name;
        QByteArray bytes;
        int line;
        QString phrase;
    } table[] = {
        {"no byte", "", 1, u"a first line with any text, found the end of the file."_s},
        {"no author", upTo(2), 3, u"the author, found the end"_s},
        {"no instructions", upTo(6), 7,
         u"the line \"<Instructions>\" somewhere from line 7 on, found the end"_s},
        {"no end of the ingredients", with("</Ingredients>\r\n", ""), 14,
         entry + u"\"<Utensils>\"."_s},
        {"no end of the utensils", upTo(16), 17,
         u"the line \"</Utensils>\" somewhere from line 16 on, "_s},
        {"empty recipe name", with("Pasta with butter", ""), 2,
         u"the name of the recipe, found nothing."_s},
        {"entry without separators", file({}, "Salt\r"), 10, entry + u"\"Salt\"."_s},
        {"entry without doubled separator", file({}, "a||\rSalt|3|9|True|1\r"), 11,
         entry + u"\"Salt|3|9|True|1\"."_s},
        {"empty line among the entries", file({}, "\r"), 10, entry + u"nothing."_s},
        {"empty ingredient name", file({}, "|3|9|True||1\r"), 10,
         u"the name of an ingredient before the first |, found \"|3|9|True||1\"."_s},
        {"empty utensil name", file({}, {}, "pot\r\rpan\r"), 13,
         u"the name of a utensil, or the line \"</Utensils>\", found nothing."_s},
        {"zero in the recipe's name", with("Pasta with butter", zero), 2, zeroFound},
        {"zero in an ingredient", file({}, zero + "||\r"), 10, zeroFound},
        {"zero in a utensil", file({}, {}, zero + '\r'), 12, zeroFound},
        {"line feed and turned direction", file({}, "a\n\xE2\x80\xAE|\r"), 10,
         entry + u"\"a\u240A<U+202E>|\"."_s},
        {"long line, cut between characters", file({}, "a" + longName.toUtf8() + '\r'), 10,
         entry + u"\"a"_s + longName.left(78) + u"...\"."_s},
        {"line feeds alone", QByteArray(wholeFile).replace("\r\n", "\n"), 1,
         u"Its lines end in a line feed alone."_s},
        {"line feeds but for one",
         QByteArray(wholeFile).replace("\r\n", "\n").replace("Cook\n", "Cook\r"), 3,
         u"found the end"_s},
    };
    const QString path = u"/cards/100%1 %2/Soup.srf"_s;
    for (const auto &[name, bytes, line, phrase] : table) {
        const auto result = parseSrf(decodeSrf(bytes));
        const auto *complaint = std::get_if<SrfComplaint>(&result);
        QVERIFY2(complaint && complaint->line == line, name);
        const QString text = complaintText(*complaint, path);
        QVERIFY2(text.startsWith(path) && text.contains(phrase), qPrintable(text));
    }
}

void TestSrfParser::decodes()
{
    const struct {
        QByteArray bytes;
        QString text;
    } cases[] = {
        {"\xF0\x9F\x8D\x9D\0"_ba, u"\U0001F35D\0"_s},
        {"\xEF\xBB\xBF\xEF\xBB\xBF", u"\uFEFF"_s}, // one byte order mark of two
        // No UTF-8: cut short, overlong, a surrogate, beyond the last character.
        {"\xC3\xA9\xC3", u"\u00C3\u00A9\u00C3"_s},
        {"\xC0\xAF", u"\u00C0\u00AF"_s},
        {"\xED\xA0\x80", u"\u00ED\u00A0\u20AC"_s},
        {"\xF4\x90\x80\x80", u"\u00F4\u0090\u20AC\u20AC"_s},
        {"\x81\x8D\x8F\x90\x9D", u"\u0081\u008D\u008F\u0090\u009D"_s}, // unused bytes
        {"\x80\x84\x89\x8E\x91\x99\x9E\x9F\xA0\xFF", u"€„‰Ž‘™žŸ\u00A0ÿ"_s},
    };
    for (const auto &[bytes, text] : cases)
        QCOMPARE(decodeSrf(bytes), text);
}

QTEST_GUILESS_MAIN(TestSrfParser)
#include "tst_srfparser.moc"
