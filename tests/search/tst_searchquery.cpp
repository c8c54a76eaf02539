#include "search/Folding.h"
#include "search/SearchQuery.h"
#include "support/Rows.h"

using namespace Qt::Literals::StringLiterals;

class tst_SearchQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matches_data()
    {
        addRows<QString, QString, bool>({
            {"part of a word", u"suppe"_s, u"Kartoffelsuppe"_s, true},
            {"all words in any order", u"soup leek"_s, u"Leek soup"_s, true},
            {"one word missing", u"soup leek"_s, u"Onion soup"_s, false},
            {"only blanks", u" \u3000\t"_s, u"Leek"_s, true},
            {"accents of the text", u"creme brulee"_s, u"Crème Brûlée"_s, true},
            {"accents of the query", u"Çrémé"_s, u"creme"_s, true},
            {"decomposed accents", u"cre\u0300me"_s, u"cr\u00E8me"_s, true},
            {"only an accent", u"\u0301"_s, u"Leek"_s, true},
            {"sharp s", u"süss"_s, u"SÜẞ und süß"_s, true},
            {"sharp s in the query", u"spaß"_s, u"Spass"_s, true},
            {"dotless and dotted i", u"ICLI KIYMA"_s, u"İçli kıyma"_s, true},
            {"i for a dotless i", u"kıyma"_s, u"Kiyma"_s, true},
            {"sigma at the end", u"ΠΙΤΕΣ"_s, u"πίτες"_s, true},
            {"sigma while typing", u"πιτες"_s, u"Πιτεσάκι"_s, true},
            {"letters without a decomposition", u"smorrebrod paella"_s, u"Smørrebrød pællạ"_s,
             true},
            {"full width", u"ＳＯＵＰ－"_s, u"soup-"_s, true},
            {"full width in the text", u"soup"_s, u"ｓｏｕｐ"_s, true},
            {"fraction", u"1/2"_s, u"½ cup"_s, true},
            {"ligature", u"fi"_s, u"ﬁgs"_s, true},
            {"apostrophes", u"grandma's"_s, u"Grandma’s"_s, true},
            {"dashes", u"stir-fry"_s, u"Stir\u2011fry"_s, true},
            {"soft hyphen", u"leeks"_s, u"Lee\u00ADks"_s, true},
            {"Chinese", u"豆腐"_s, u"麻婆豆腐"_s, true},
            {"voiced kana", u"かき"_s, u"かぎ"_s, true},
            {"voiced kana in the query", u"かぎ"_s, u"かき"_s, false},
            {"vowel sign", u"की"_s, u"का"_s, false},
            {"Thai tone", u"ไก่"_s, u"ไก"_s, false},
            {"Hebrew points", u"מרק"_s, u"מָרָק"_s, true},
            {"syllable while typing", u"가"_s, u"각"_s, true},
            {"beyond the first plane", u"🍲 𝒜"_s, u"a 🍲"_s, true},
            {"other half of a pair", u"🍲"_s, u"🍳"_s, false},
            {"half of a pair", QString(QChar(0xD83C)), u"🍲"_s, false},

            {"quoted word", u"\"leek\""_s, u"A leek."_s, true},
            {"quoted word in a longer one", u"\"leek\""_s, u"Leeks"_s, false},
            {"quoted word at the end of one", u"\"suppe\""_s, u"Kartoffelsuppe"_s, false},
            {"quoted word after a longer one", u"\"leek\""_s, u"Leeks, leek"_s, true},
            {"quoted word next to an accent", u"\"cre\""_s, u"crème"_s, false},
            {"quoted word before an apostrophe", u"\"grandma\""_s, u"Grandma’s"_s, true},
            {"quoted digits", u"\"1\""_s, u"10 eggs"_s, false},
            {"quoted Chinese word", u"\"豆腐\""_s, u"麻婆豆腐"_s, true},
            {"quoted kana before a voicing mark", u"\"か\""_s, u"が"_s, false},
            {"phrase", u"\" leek   soup \""_s, u"Leek\r\nsoup"_s, true},
            {"words of a phrase apart", u"\"leek soup\""_s, u"Leek and soup"_s, false},
            {"typographic marks", u"“leek”s"_s, u"Leek, salt"_s, true},
            {"open phrase", u"\"leek so"_s, u"Leek soup"_s, true},
            {"open phrase in a word", u"\"ee"_s, u"Leek"_s, false},
            {"open phrase with a blank", u"\"leek "_s, u"Leeks"_s, false},
            {"only a quotation mark", u"\""_s, u"Leek"_s, true},
            {"empty quotation marks", u"\"\" \" \" -\"\""_s, u"Leek"_s, true},
            {"mark inside a word", u"12\""_s, u"A 12\" pan"_s, true},

            {"excluded word", u"soup -chicken"_s, u"Chicken soup"_s, false},
            {"excluded word that is missing", u"soup -chicken"_s, u"Leek soup"_s, true},
            {"only an excluded word", u"-chicken"_s, u"Leek soup"_s, true},
            {"excluded phrase", u"-\"leek soup\""_s, u"Soup of leek"_s, true},
            {"excluded phrase that is there", u"-\"leek soup\""_s, u"A leek soup"_s, false},
            {"only a minus", u"soup -"_s, u"Soup"_s, true},
            {"minus inside a word", u"stir-fry"_s, u"Stir"_s, false},
        });
    }

    void matches()
    {
        const auto [typed, text, expected] = fetchRow<QString, QString, bool>();
        QCOMPARE(SearchQuery(typed).matches(text), expected);
        std::string ofUtf8 = "before ";
        appendFolded(ofUtf8, text.toStdString());
        QCOMPARE(ofUtf8, "before " + folded(text));
    }

    // Brackets stand for the ends of a range.
    void finds_data()
    {
        addRows<QString, QString>({
            {"every word, every time", u"ee so"_s, u"L[ee]k [so]up, thr[ee]"_s},
            {"nothing", u"ham"_s, u"Leek soup"_s},
            {"words that overlap", u"leek eks"_s, u"[Leeks]"_s},
            {"words next to each other", u"le ek"_s, u"[Leek]"_s},
            {"part of a sharp s", u"as"_s, u"Sp[aß]e"_s},
            {"across a ligature", u"offi"_s, u"C[oﬃ]ng"_s},
            {"decomposed accent", u"e"_s, u"Cr[e\u0300]m[e]"_s},
            {"accent after the last letter", u"creme"_s, u"[cre\u0300me\u0301]."_s},
            {"letter before an accent", u"r"_s, u"C[r]e\u0300me"_s},
            {"blanks in a row", u"\"a b\""_s, u"([a \r\n b])"_s},
            {"soft hyphen", u"leek"_s, u"[Le\u00ADek]"_s},
            {"beyond the first plane", u"🍲 x"_s, u"🍳[🍲x]"_s},
            {"part of a syllable", u"가"_s, u"[각]하"_s},
            {"only whole words", u"\"leek\""_s, u"leeks [leek]"_s},
            {"no excluded words", u"-leek soup"_s, u"leek [soup]"_s},
        });
    }

    void finds()
    {
        const auto [typed, expected] = fetchRow<QString, QString>();
        QString text = expected;
        text.remove(u'[').remove(u']');
        QString marked = text;
        const QList<SearchQuery::Range> ranges = SearchQuery(typed).found(text);
        for (auto range = ranges.crbegin(); range != ranges.crend(); ++range)
            marked.insert(range->start + range->length, u']').insert(range->start, u'[');
        QCOMPARE(marked, expected);
    }
};

QTEST_APPLESS_MAIN(tst_SearchQuery)
#include "tst_searchquery.moc"
