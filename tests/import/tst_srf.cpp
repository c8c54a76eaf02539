#include "import/srf/SrfFile.h"
#include "import/srf/SrfParser.h"
#include "interaction/ControlCharacters.h"
#include "platform/Paths.h"
#include "platform/Utf8.h"
#include "support/Rows.h"
#include "support/SrfText.h"

#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using platform::ReadFailure;

namespace {

const QByteArray wholeFile =
    srf({.title = "Pasta with butter",
         .instructions = {"Boil the pasta.", "Toss with butter."},
         .ingredients = {"Pasta|9|365|True||1 lb", "Butter|7|30|True||2 tbsp"},
         .utensils = {"Large pot"}});

QByteArray firstLines(int count)
{
    return wholeFile.split('\r').first(count).join('\r');
}

// All that was read, one item per line, with the line numbers of ingredients and utensils.
QString shown(const SrfRecipe &recipe)
{
    const auto text = [](std::string_view utf8) { return platform::decodeUtf8(utf8); };
    QStringList heading;
    for (const std::string_view field :
         {recipe.name, recipe.author, recipe.type, recipe.serves, recipe.description})
        heading += text(field);
    QStringList all{heading.join(u'/'), text(recipe.instructions)};
    for (const SrfIngredient &each : recipe.ingredients)
        all += u"%1 %2 %3"_s.arg(QString::number(each.line), text(each.quantity), text(each.name));
    for (const SrfUtensil &each : recipe.utensils)
        all += u"%1 %2"_s.arg(QString::number(each.line), text(each.name));
    return all.join(u'\n').replace("\r\n"_L1, "~"_L1);
}

} // namespace

class tst_Srf : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase()
    {
        for (const auto &[name, size] : {std::pair(u"largest"_s, largestSrfFile),
                                         {u"too large"_s, largestSrfFile + 1},
                                         {u"unreadable"_s, 0}}) {
            QFile file(m_folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size)); // sparse
        }
        const QByteArray folder = QFile::encodeName(m_folder.path());
        QCOMPARE(::chmod((folder + "/unreadable").constData(), 0), 0);
        QCOMPARE(::mkfifo((folder + "/pipe").constData(), 0600), 0);
        for (const auto &[target, name] : {std::pair(u"largest"_s, u"link"_s),
                                           {u"nowhere"_s, u"broken"_s},
                                           {u"loop"_s, u"loop"_s}})
            QVERIFY(QFile::link(target, m_folder.filePath(name)));
    }

    void largestFile()
    {
        const auto result = readSrfFile(platform::nativePath(m_folder.filePath(u"link"_s)));
        QCOMPARE(std::get<QByteArray>(result).size(), largestSrfFile);
    }

    void unreadableFiles_data()
    {
        const QString none = u"There is no file"_s;
        using enum ReadFailure;
        addRows<QString, ReadFailure, QString>({
            {"broken link", u"broken"_s, NotFound, none},
            {"below a file", u"largest/below"_s, NotFound, none},
            {"null character", u"largest\0.srf"_s, NotFound, none},
            {"loop of links", u"loop"_s, Failed, u"levels of symbolic links"_s},
            {"folder", u"."_s, Folder, u"is a folder. Choose the recipe files in it"_s},
            {"pipe", u"pipe"_s, NotRegular, u"Save the recipe as an ordinary file"_s},
            {"device", u"/dev/zero"_s, NotRegular, u"is a pipe, a socket or a device"_s},
            {"too large", u"too large"_s, TooLarge, u"is larger than 8 MiB"_s},
            {"unreadable", u"unreadable"_s, AccessDenied, u"Change its permissions"_s},
            {"read error", u"/proc/self/mem"_s, Failed,
             u"could not be read: Input/output error."_s},
        });
    }

    void unreadableFiles()
    {
        const auto [name, failure, advice] = fetchRow<QString, ReadFailure, QString>();
        if (failure == ReadFailure::AccessDenied && ::geteuid() == 0)
            QSKIP("root may read every file");
        const QString path = name.startsWith(u'/') ? name : m_folder.filePath(name);
        const auto result = readSrfFile(platform::nativePath(path));
        const auto *error = std::get_if<SrfFileError>(&result);
        QVERIFY(error);
        QCOMPARE(error->failure, failure);
        QVERIFY2(error->message.contains(escapeControlCharacters(path)),
                 qPrintable(error->message));
        QVERIFY2(error->message.contains(advice), qPrintable(error->message));
    }

    // The files in /proc say that their size is 0.
    void fileThatGrowsWhileRead()
    {
        const auto grown = platform::readRegularFile("/proc/self/status", largestSrfFile);
        QVERIFY(std::get<QByteArray>(grown).startsWith("Name:"));
        const auto outgrown = platform::readRegularFile("/proc/self/status", 20);
        QCOMPARE(std::get<platform::FileReadError>(outgrown).failure, ReadFailure::TooLarge);
    }

    void goodFiles_data()
    {
        const QString heading = u"Soup/A. Cook/2/4/Quick\n"_s;
        const QString whole = u"Pasta with butter/A. Cook/2/4/Quick\n"
                              "Boil the pasta.~Toss with butter.~\n"
                              "12 1 lb Pasta\n13 2 tbsp Butter\n16 Large pot"_s;
        addRows<QByteArray, QString>({
            {"CR LF", wholeFile, whole},
            {"CR alone", QByteArray(wholeFile).replace("\r\n", "\r"), whole},
            {"no end of the last line", wholeFile.chopped(2), whole},
            {"text after the last tag", wholeFile + "\r\n||\r\n<Utensils>\r\n\r\n", whole},
            {"other encoding after the last tag",
             srf({.title = "S\xC3\xBC\xC3\x9F", .instructions = {"</Utensils>"}}) + "caf\xE9\r\n",
             u"Süß/A. Cook/2/4/Quick\n</Utensils>~"_s},
            {"blank lines among the ingredients and utensils",
             srf({.ingredients = {"", "Salt|1|1|1||", "  "}, .utensils = {" ", "pot", ""}}),
             heading + u"\n11  Salt\n16 pot"_s},
            {"title is not trimmed", srf({.title = " |'\t\"\n"}),
             u" |'\t\"\n/A. Cook/2/4/Quick\n"_s},
            {"lines between the sections are skipped",
             "\rSoup\rA. Cook\r2\r4\rQuick\r\r</Instructions>\r<Instructions>\r</Instructions>\r\r"
             "n|o||\r<ingredients>\r<Ingredients>\r</Ingredients>\r</Utensils>\r<Utensils>\rpot\r"
             "</Utensils>\r",
             heading + u"\n18 pot"_s},
            {"blank line of spaces, not of a tab", srf({.instructions = {"a", "   ", "\t"}}),
             heading + u"a~~~~\t~"_s},
            {"LF alone ends no line", srf({.instructions = {"a\n", " b\n ", "\nc"}}),
             heading + u"a\n~ b\n ~\nc~"_s},
            {"tags with spaces or in lower case",
             srf({.instructions = {"</Instructions> ", " </Instructions>", "</instructions>"}}),
             heading + u"</Instructions> ~ </Instructions>~</instructions>~"_s},
            {"quantities and utensils are not trimmed",
             srf({.ingredients = {"A b|1|2| 0||2 1/2 (x)", "A||2|3||1|2||3", "A|||1",
                                  "A (raw)|1|2|3|x||"},
                  .utensils = {" pot ", "pot|1"}}),
             heading
                 + u"\n10 2 1/2 (x) A b\n11 2|3||1|2||3 A\n12 |1 A\n13  A (raw)\n"
                   "16  pot \n17 pot|1"_s},
        });
    }

    void goodFiles()
    {
        const auto [bytes, expected] = fetchRow<QByteArray, QString>();
        const auto result = parseSrf(decodeSrf(bytes));
        const auto *recipe = std::get_if<SrfRecipe>(&result);
        QVERIFY(recipe);
        QCOMPARE(shown(*recipe), expected);
    }

    void badFiles_data()
    {
        const QString entry =
            u"expected an ingredient as name|type|shelf life|vegetarian||quantity, "
            "or the line \"</Ingredients>\", found "_s;
        const QString longName = u"\U0001F35D"_s.repeated(100);
        const QByteArray unixFile = QByteArray(wholeFile).replace("\r\n", "\n");

        addRows<QByteArray, int, QString>({
            {"empty file", "", 1, u"a first line with any text, found the end of the file."_s},
            {"ends after the title", firstLines(2), 3, u"the author, found the end"_s},
            {"ends before the instructions", firstLines(6), 7,
             u"the line \"<Instructions>\" somewhere from line 7 on, found the end"_s},
            {"ends before the utensils", firstLines(14), 15,
             u"the line \"<Utensils>\" somewhere from line 15 on, found the end"_s},
            {"section is not closed", firstLines(13) + "\r<Utensils>", 14,
             entry + u"\"<Utensils>\"."_s},
            {"no title", srf({.title = ""}), 2, u"the name of the recipe, found nothing."_s},
            {"null character in the title", srf({.title = QByteArray("a\0\t\x7F", 4)}), 2,
             u"a name without a null character, found \"a\u2400\u2409<U+007F>"_s},
            {"ingredient without quantity", srf({.ingredients = {"a||", "Salt|3|9|True|1"}}), 11,
             entry + u"\"Salt|3|9|True|1\"."_s},
            {"a tab for an ingredient", srf({.ingredients = {"\t"}}), 10, entry + u"\"\u2409\"."_s},
            {"ingredient without name", srf({.ingredients = {"|3|9|True||1"}}), 10,
             u"the name of an ingredient before the first |, found \"|3|9|True||1\"."_s},
            {"null character in a utensil", srf({.utensils = {"pot", "\0"_ba}}), 13,
             u"a name without a null character, found \"\u2400\"."_s},
            {"control characters are shown", srf({.ingredients = {"a\n\x1F\xE2\x80\xAE|"}}), 10,
             entry + u"\"a\u240A\u241F<U+202E>|\"."_s},
            {"a long line is cut between two characters",
             srf({.ingredients = {"a" + longName.toUtf8()}}), 10,
             entry + u"\"a"_s + longName.left(78) + u"...\"."_s},
            {"LF line ends", unixFile, 1, u"Its lines end in a line feed alone."_s},
            {"LF line ends but for some", QByteArray(unixFile).replace(".\n", ".\r\n"), 1,
             u"Its lines end in a line feed alone."_s},
            {"CR LF line ends but for some",
             QByteArray(wholeFile).replace("1 lb\r\n", "1 lb\n").chopped(14), 16,
             u"the line \"</Utensils>\" somewhere from line 15 on, found the end"_s},
        });
    }

    void badFiles()
    {
        const auto [bytes, line, phrase] = fetchRow<QByteArray, int, QString>();
        const auto result = parseSrf(decodeSrf(bytes));
        const auto *error = std::get_if<SrfError>(&result);
        QVERIFY(error);
        QCOMPARE(error->line, line);
        const QString path = u"/cards/100%1 %2/Soup.srf"_s;
        const QString text = srfErrorText(*error, path);
        QVERIFY2(text.startsWith(path) && text.contains(phrase), qPrintable(text));
    }

    void decoding_data()
    {
        QByteArray upperHalf;
        for (int byte = 0x80; byte <= 0xFF; ++byte)
            upperHalf += static_cast<char>(byte);
        addRows<QByteArray, QString>({
            {"UTF-8", "\xF0\x9F\x8D\x9D\0"_ba, u"\U0001F35D\0"_s},
            {"the first of two byte order marks", "\xEF\xBB\xBF\xEF\xBB\xBF", u"\uFEFF"_s},
            {"UTF-8 cut short", "\xC3\xA9\xC3", u"\u00C3\u00A9\u00C3"_s},
            {"overlong UTF-8", "\xC0\xAF", u"\u00C0\u00AF"_s},
            {"UTF-8 of a surrogate", "\xED\xA0\x80", u"\u00ED\u00A0\u20AC"_s},
            {"UTF-8 above U+10FFFF", "\xF4\x90\x80\x80", u"\u00F4\u0090\u20AC\u20AC"_s},
            {"upper half of Windows-1252", upperHalf,
             u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ"_s
                 + QString::fromLatin1(upperHalf.sliced(0x20))},
        });
    }

    void decoding()
    {
        const auto [bytes, text] = fetchRow<QByteArray, QString>();
        QCOMPARE(decodeSrf(bytes), text.toUtf8());
    }
};

QTEST_GUILESS_MAIN(tst_Srf)
#include "tst_srf.moc"
