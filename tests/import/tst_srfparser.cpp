#include "import/srf/SrfDecoder.h"
#include "import/srf/SrfParser.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray wholeFile = "Family cookbook\r\nPasta with butter\r\nA. Cook\r\n2\r\n4\r\n"
                             "Quick weekday dish\r\n<Instructions>\r\nBoil the pasta.\r\n"
                             "Toss with butter.\r\n</Instructions>\r\n<Ingredients>\r\n"
                             "Pasta|9|365|True||1 lb\r\nButter|7|30|True||2 tbsp\r\n"
                             "</Ingredients>\r\n<Utensils>\r\nLarge pot\r\n</Utensils>\r\n";

// A heading of six lines and three empty sections but for what is given; lines end in CR.
QByteArray file(const QByteArray &instructions, const QByteArray &ingredients = {},
                const QByteArray &utensils = {}, const QByteArray &name = "N")
{
    return "\r" + name + "\rA\r1\r2\rD\r<Instructions>\r" + instructions
        + "</Instructions>\r<Ingredients>\r" + ingredients + "</Ingredients>\r<Utensils>\r"
        + utensils + "</Utensils>\r";
}

// Everything read, one thing a line, with the number of the line where it counts.
QString shown(const SrfRecipe &recipe)
{
    const QStringList heading{recipe.name, recipe.author, recipe.type, recipe.serves,
                              recipe.description};
    QStringList all{heading.join(u'/'), recipe.instructions};
    for (const SrfIngredient &each : recipe.ingredients)
        all += u"%1 %2 %3"_s.arg(QString::number(each.line), each.quantity, each.name);
    for (const SrfUtensil &each : recipe.utensils)
        all += u"%1 %2"_s.arg(QString::number(each.line), each.name);
    return all.join(u'\n').replace("\r\n"_L1, "~"_L1);
}

} // namespace

class TestSrfParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsGoodFiles()
    {
        const QString heading = u"N/A/1/2/D\n"_s;
        const QString whole = u"Pasta with butter/A. Cook/2/4/Quick weekday dish\n"
                              "Boil the pasta.~Toss with butter.~\n"
                              "12 1 lb Pasta\n13 2 tbsp Butter\n16 Large pot"_s;
        const std::tuple<const char *, QByteArray, QString> table[] = {
            {"CR alone", QByteArray(wholeFile).replace("\r\n", "\r"), whole},
            {"no last line end", wholeFile.chopped(2), whole},
            {"text after the last tag", wholeFile + "\r\n||\r\n<Utensils>\r\n\r\n", whole},
            {"name as it stands", file({}, {}, {}, " |'\t\"\n"), u" |'\t\"\n/A/1/2/D\n"_s},
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
            {"quantities and utensils as they stand",
             file({}, "A b|1|2| 0||2 1/2 (x)\rA||2|3||1|2||3\rA|||1\rA (raw)|1|2|3|x||\r",
                  " pot \rpot|1\r"),
             heading
                 + u"\n10 2 1/2 (x) A b\n11 2|3||1|2||3 A\n12 |1 A\n13  A (raw)\n"
                   "16  pot \n17 pot|1"_s},
        };
        for (const auto &[name, bytes, expected] : table) {
            const auto result = parseSrf(decodeSrf(bytes));
            const auto *recipe = std::get_if<SrfRecipe>(&result);
            QVERIFY2(recipe && shown(*recipe) == expected, name);
        }
    }

    void complainsOfBadFiles()
    {
        // The whole file's first lines.
        const auto upTo = [](int line) {
            return QByteArrayList(wholeFile.split('\r').mid(0, line)).join('\r');
        };
        const QString entry =
            u"expected an ingredient as name|type|shelf life|vegetarian||quantity, "
            "or the line \"</Ingredients>\", found "_s;
        const QString longName = u"\U0001F35D"_s.repeated(100);
        const QByteArray zero("a\0\t\x7F", 4);
        const std::tuple<QByteArray, int, QString> table[] = {
            {"", 1, u"a first line with any text, found the end of the file."_s},
            {upTo(2), 3, u"the author, found the end"_s},
            {upTo(6), 7, u"the line \"<Instructions>\" somewhere from line 7 on, found the end"_s},
            {upTo(14), 15, u"the line \"<Utensils>\" somewhere from line 15 on, found the end"_s},
            {upTo(13) + "\r<Utensils>", 14, entry + u"\"<Utensils>\"."_s},
            {file({}, {}, {}, ""), 2, u"the name of the recipe, found nothing."_s},
            {file({}, {}, {}, zero), 2,
             u"a name without a zero character, found \"a\u2400\u2409<U+007F>"_s},
            {file({}, "a||\rSalt|3|9|True|1\r"), 11, entry + u"\"Salt|3|9|True|1\"."_s},
            {file({}, "\r"), 10, entry + u"nothing."_s},
            {file({}, "|3|9|True||1\r"), 10,
             u"the name of an ingredient before the first |, found \"|3|9|True||1\"."_s},
            {file({}, {}, "pot\r\rpan\r"), 13,
             u"the name of a utensil, or the line \"</Utensils>\", found nothing."_s},
            {file({}, "a\n\xE2\x80\xAE|\r"), 10, entry + u"\"a\u240A<U+202E>|\"."_s},
            // Cut between two characters.
            {file({}, "a" + longName.toUtf8() + '\r'), 10,
             entry + u"\"a"_s + longName.left(78) + u"...\"."_s},
            {QByteArray(wholeFile).replace("\r\n", "\n"), 1,
             u"Its lines end in a line feed alone."_s},
            {QByteArray(wholeFile).replace("\r\n", "\n").replace("Cook\n", "Cook\r"), 3,
             u"found the end"_s},
        };
        const QString path = u"/cards/100%1 %2/Soup.srf"_s;
        for (const auto &[bytes, line, phrase] : table) {
            const auto result = parseSrf(decodeSrf(bytes));
            const auto *error = std::get_if<SrfError>(&result);
            QVERIFY2(error && error->line == line, qPrintable(phrase));
            const QString text = srfErrorText(*error, path);
            QVERIFY2(text.startsWith(path) && text.contains(phrase), qPrintable(text));
        }
    }

    void decodes()
    {
        const std::pair<QByteArray, QString> cases[] = {
            {"\xF0\x9F\x8D\x9D\0"_ba, u"\U0001F35D\0"_s},
            {"\xEF\xBB\xBF\xEF\xBB\xBF", u"\uFEFF"_s}, // one byte order mark of two
            // No UTF-8: cut short, overlong, a surrogate, beyond the last character.
            {"\xC3\xA9\xC3", u"\u00C3\u00A9\u00C3"_s},
            {"\xC0\xAF", u"\u00C0\u00AF"_s},
            {"\xED\xA0\x80", u"\u00ED\u00A0\u20AC"_s},
            {"\xF4\x90\x80\x80", u"\u00F4\u0090\u20AC\u20AC"_s},
            {"\x81\x9D\x84\x89\x8E\x99\x9F\xA0\xFF", u"\u0081\u009D„‰Ž™Ÿ\u00A0ÿ"_s},
        };
        for (const auto &[bytes, text] : cases)
            QCOMPARE(decodeSrf(bytes), text);
    }
};

QTEST_GUILESS_MAIN(TestSrfParser)
#include "tst_srfparser.moc"
