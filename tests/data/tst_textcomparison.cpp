#include "data/TextComparison.h"

#include <QTest>

#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

int sign(int number)
{
    return (number > 0) - (number < 0);
}

} // namespace

class TestTextComparison : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void compares()
    {
        const std::tuple<std::string, std::string, int> table[] = {
            {"E", "é", -1}, // beside its letter
            {"éa", "eb", -1}, // letters decide before accents
            {"é", "ea", -1},
            {"eé", "ée", -1}, // the first accent decides
            {"ß", "ss", 1},
            {"σςΣ", "ΣΣΣ", 0},
            {"가", "각", -1},
            {"\xE9", "\U0010FFFD", 1}, // stray bytes stand behind all
            {"\xE0\x81\x81", "a", 1}, // overlong
            {"\xF4\x90\x83\xA9", "\xE9", 1}, // beyond Unicode
        };
        for (const auto &[a, b, expected] : table)
            QVERIFY2(sign(compareTexts(a, b)) == expected, a.c_str());
    }

    void agreesWithItself()
    {
        const auto pieces = QByteArray("a A e é É e\u0301 ß ẞ ss σ ς İ i ı 가 K \u212A * ? 🍲 \xE9 "
                                       "\xE0\x81\x81 \xE0\x80\xAA \xF4\x90\x83\xA9")
                                .split(' ');
        const unsigned seed = std::random_device{}();
        std::mt19937 random(seed);
        const auto text = [&] {
            std::string result;
            for (auto length = random() % 4; length > 0; --length)
                result += pieces[int(random() % unsigned(pieces.size()))].toStdString();
            return result;
        };
        for (int i = 0; i < 200'000; ++i) {
            const std::string a = text();
            const std::string b = text();
            const std::string c = text();
            const int ab = sign(compareTexts(a, b));
            QVERIFY2(sign(compareTexts(b, a)) == -ab && (ab == 0) == textsEqual(a, b)
                         && (ab != 0 || textHash(a) == textHash(b))
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

    void matches()
    {
        const std::tuple<const char *, QStringList, QStringList> table[] = {
            // a pattern, what matches it and what does not
            {"*🍲", {u"ab🍲"_s}, {u""_s, u"🍲a"_s}},
            {"?", {u"a"_s, u"🍲"_s, u"가"_s}, {u""_s, u"ab"_s}},
            {"a*B*c", {u"abc"_s, u"AxxBxxC"_s, u"abcbc"_s}, {u"acb"_s, u"ab"_s, u"abcd"_s}},
            {"[a]#%_", {u"[A]#%_"_s}, {u"a#%_"_s, u"[a]1xx"_s}},
            // Many runs that all fail late must not take time beyond measure.
            {"*a*a*a*a*a*a*a*a*b", {}, {u"a"_s.repeated(20'000)}},
        };
        for (const auto &[pattern, matching, others] : table) {
            for (const QString &text : matching + others)
                QVERIFY2(textMatches(text.toStdString(), pattern) == matching.contains(text),
                         pattern);
        }
    }
};

QTEST_GUILESS_MAIN(TestTextComparison)
#include "tst_textcomparison.moc"
