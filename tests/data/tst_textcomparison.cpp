#include "data/TextComparison.h"
#include "support/RandomSeed.h"

#include <QTest>

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
        QTest::addColumn<std::string>("a");
        QTest::addColumn<std::string>("b");
        QTest::addColumn<int>("expected");
        const auto row = [](const char *name, const char *a, const char *b, int expected) {
            QTest::newRow(name) << std::string(a) << std::string(b) << expected;
        };
        row("accent next to its letter", "E", "é", -1);
        row("letters decide before accents", "éa", "eb", -1);
        row("shorter text first", "é", "ea", -1);
        row("first accent decides", "eé", "ée", -1);
        row("sharp s is one letter", "ß", "ss", 1);
        row("all forms of sigma", "σςΣ", "ΣΣΣ", 0);
        row("Hangul syllables", "가", "각", -1);
        row("invalid byte after all characters", "\xE9", "\U0010FFFD", 1);
        row("overlong form", "\xE0\x81\x81", "a", 1);
        row("number outside Unicode", "\xF4\x90\x83\xA9", "\xE9", 1);
    }

    void compares()
    {
        QFETCH(std::string, a);
        QFETCH(std::string, b);
        QTEST(sign(compareTexts(a, b)), "expected");
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

    void matches_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<bool>("expected");
        const struct {
            QString pattern;
            QStringList matching;
            QStringList others;
        } table[] = {
            {u"*🍲"_s, {u"ab🍲"_s}, {u""_s, u"🍲a"_s}},
            {u"?"_s, {u"a"_s, u"🍲"_s, u"가"_s}, {u""_s, u"ab"_s}},
            {u"a*B*c"_s, {u"abc"_s, u"AxxBxxC"_s, u"abcbc"_s}, {u"acb"_s, u"ab"_s, u"abcd"_s}},
            {u"[a]#%_"_s, {u"[A]#%_"_s}, {u"a#%_"_s, u"[a]1xx"_s}},
        };
        for (const auto &[pattern, matching, others] : table) {
            for (const QString &text : matching + others)
                QTest::addRow("'%s' like '%s'", qUtf8Printable(text), qUtf8Printable(pattern))
                    << text << pattern << matching.contains(text);
        }
        // Each run fails late; trying all their lengths would take years.
        QTest::newRow("many runs") << u"a"_s.repeated(20'000) << u"*a*a*a*a*a*a*a*a*b"_s << false;
    }

    void matches()
    {
        QFETCH(QString, text);
        QFETCH(QString, pattern);
        QTEST(textMatches(text.toStdString(), pattern.toStdString()), "expected");
    }
};

QTEST_GUILESS_MAIN(tst_TextComparison)
#include "tst_textcomparison.moc"
