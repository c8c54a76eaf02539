#include "data/TextComparison.h"
#include "support/RandomSeed.h"
#include "support/Rows.h"

using namespace Qt::Literals::StringLiterals;

namespace {

int sign(int number)
{
    return (number > 0) - (number < 0);
}

} // namespace

class tst_TextComparison : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void compares_data()
    {
        addRows<std::string, std::string, int>({
            {"accent next to its letter", "E", "é", -1},
            {"letters decide before accents", "éa", "eb", -1},
            {"shorter text first", "é", "ea", -1},
            {"first accent decides", "eé", "ée", -1},
            {"sharp s is one letter", "ß", "ss", 1},
            {"all forms of sigma", "σςΣ", "ΣΣΣ", 0},
            {"Hangul syllables", "가", "각", -1},
            {"invalid byte after all characters", "\xE9", "\U0010FFFD", 1},
            {"overlong form", "\xE0\x81\x81", "a", 1},
            {"number outside Unicode", "\xF4\x90\x83\xA9", "\xE9", 1},
        });
    }

    void compares()
    {
        const auto [a, b, expected] = fetchRow<std::string, std::string, int>();
        QCOMPARE(sign(compareTexts(a, b)), expected);
    }

    void agreesWithItself()
    {
        const auto pieces = QByteArray("a A e é É e\u0301 ß ẞ ss σ ς İ i ı 가 K \u212A * ? 🍲 \xE9 "
                                       "\xE0\x81\x81 \xE0\x80\xAA \xF4\x90\x83\xA9")
                                .split(' ');
        const unsigned seed = randomSeed();
        std::mt19937 random(seed);
        const auto text = [&] {
            std::string result;
            for (auto length = random() % 4; length > 0; --length)
                result += pieces[int(random() % unsigned(pieces.size()))].toStdString();
            return result;
        };
        const auto key = [](const std::string &text) {
            return std::array{textPrefix(text, 0), textPrefix(text, 8), textPrefix(text, 16)};
        };
        for (int i = 0; i < 200'000; ++i) {
            const std::string a = text();
            const std::string b = text();
            const std::string c = text();
            const int ab = sign(compareTexts(a, b));
            QVERIFY2(sign(compareTexts(b, a)) == -ab && (ab == 0) == textsEqual(a, b)
                         && (ab != 0 || textHash(a) == textHash(b))
                         && (key(a) == key(b) || (key(a) < key(b)) == (ab < 0))
                         && (ab > 0 || compareTexts(b, c) > 0 || compareTexts(a, c) <= 0)
                         && (hasPatternCharacters(b) || textMatches(a, b) == textsEqual(a, b))
                         && textMatches(std::string(a).append(b).append(c),
                                        std::string(a).append("*").append(c)),
                     qPrintable(u"seed %1, round %2"_s.arg(seed).arg(i)));
        }
    }

    void foldsAsUnicodeDoes()
    {
        for (char32_t c = 1; c <= 0x10FFFF; ++c) {
            if (c >= 0xD800 && c <= 0xDFFF)
                continue;
            const std::string letter = QString::fromUcs4(&c, 1).toStdString();
            const char32_t folded = QChar::toCaseFolded(c);
            const std::string same = QString::fromUcs4(&folded, 1).toStdString();
            if (!textsEqual(letter, same))
                QFAIL(qPrintable(u"U+%1"_s.arg(uint{c}, 0, 16)));
        }
    }

    void matches_data()
    {
        using Texts = QByteArrayList;
        const std::tuple<QByteArray, Texts, Texts> table[] = {
            {"*🍲", {"ab🍲"}, {"", "🍲a"}},
            {"?", {"a", "🍲", "가"}, {"", "ab"}},
            {"a*B*c", {"abc", "AxxBxxC", "abcbc"}, {"acb", "ab", "abcd"}},
            {"[a]#%_", {"[A]#%_"}, {"a#%_", "[a]1xx"}},
            // Each run fails late; trying all their lengths would take years.
            {"*a*a*a*a*a*a*a*a*b", {}, {QByteArray(20'000, 'a')}},
        };
        QList<std::tuple<QByteArray, QByteArray, QByteArray, bool>> rows;
        for (const auto &[pattern, matching, others] : table) {
            for (const QByteArray &text : matching + others)
                rows.append(
                    {text.left(20) + " like " + pattern, text, pattern, matching.contains(text)});
        }
        addRows(rows);
    }

    void matches()
    {
        const auto [text, pattern, expected] = fetchRow<QByteArray, QByteArray, bool>();
        QCOMPARE(textMatches(text.toStdString(), pattern.toStdString()), expected);
    }
};

QTEST_GUILESS_MAIN(tst_TextComparison)
#include "tst_textcomparison.moc"
