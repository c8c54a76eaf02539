#include "TextComparison.h"

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
    void compares_data();
    void compares();
    void agreesWithItself();
    void foldsAsUnicodeDoes();
    void matches_data();
    void matches();
};

void TestTextComparison::compares_data()
{
    QTest::addColumn<QByteArray>("a");
    QTest::addColumn<QByteArray>("b");
    QTest::addColumn<int>("expected");

    const auto row = [](const char *name, const char *a, const char *b, int expected) {
        QTest::newRow(name) << QByteArray(a) << QByteArray(b) << expected;
    };
    row("both empty", "", "", 0);
    row("empty first", "", "a", -1);
    row("shorter first", "Salt", "salted", -1);
    row("ASCII case", "SaLT", "sAlt", 0);
    row("[ stands before letters", "[", "A", -1);
    row("accent and case", "CRÈME", "crème", 0);
    row("e before é", "e", "é", -1);
    row("E before é", "E", "é", -1);
    row("é before f", "é", "f", -1);
    row("É before f", "É", "F", -1);
    row("base letters decide before accents", "éa", "eb", -1);
    row("accents decide last", "ea", "éa", -1);
    row("the first accent decides", "eé", "ée", -1);
    row("length decides before accents", "é", "ea", -1);
    row("ß is not ss", "ß", "ss", 1);
    row("ß is ẞ", "ß", "ẞ", 0);
    row("İ is not i, but beside it", "i", "İ", -1);
    row("İ before j", "İ", "j", -1);
    row("ı is not I", "I", "ı", -1);
    row("sigmas", "σςΣ", "ΣΣΣ", 0);
    row("the Kelvin sign is k", "\u212A", "k", 0);
    row("long s is s", "ſ", "S", 0);
    row("Cyrillic", "БОРЩ", "борщ", 0);
    row("Deseret, beyond 16 bits", "\U00010400", "\U00010428", 0);
    row("NFC and NFD are two texts", "\u00E9", "e\u0301", -1);
    row("two base letters of one syllable row", "가", "각", -1);
    row("Hangul after Latin", "각", "z", 1);
    row("stray byte behind all", "\xE9", "\U0010FFFD", 1);
    row("stray bytes differ", "\xE9", "\xE8", 1);
    row("an overlong A is no a", "\xC1\x81", "a", 1);
    row("an overlong three-byte A is no a", "\xE0\x81\x81", "a", 1);
    row("beyond Unicode is no stray byte", "\xF4\x90\x83\xA9", "\xE9", 1);
    row("cut off", "caf\xC3", "caf\xC3\xA9", 1);
}

void TestTextComparison::compares()
{
    QFETCH(const QByteArray, a);
    QFETCH(const QByteArray, b);
    QFETCH(const int, expected);
    const std::string left = a.toStdString();
    const std::string right = b.toStdString();
    QCOMPARE(sign(compareTexts(left, right)), expected);
    QCOMPARE(sign(compareTexts(right, left)), -expected);
    QCOMPARE(textsEqual(left, right), expected == 0);
}

void TestTextComparison::agreesWithItself()
{
    const std::vector<std::string> pieces = {"a",
                                             "A",
                                             "e",
                                             "E",
                                             "é",
                                             "É",
                                             "e\u0301",
                                             "ß",
                                             "ẞ",
                                             "ss",
                                             "σ",
                                             "ς",
                                             "İ",
                                             "i",
                                             "ı",
                                             "가",
                                             "K",
                                             "\u212A",
                                             " ",
                                             "*",
                                             "?",
                                             "\xE9",
                                             "\xE0\x81\x81",
                                             "\xE0\x80\xAA",
                                             "\xF4\x90\x83\xA9",
                                             "🍲"};
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    const auto text = [&] {
        std::string result;
        for (auto length = random() % 4; length > 0; --length)
            result += pieces[random() % pieces.size()];
        return result;
    };
    for (int i = 0; i < 200'000; ++i) {
        const std::string a = text();
        const std::string b = text();
        const std::string c = text();
        const auto told = qPrintable(u"seed %1: %2, %3, %4"_s.arg(seed).arg(
            QString::fromLatin1(QByteArray::fromStdString(a).toHex()),
            QString::fromLatin1(QByteArray::fromStdString(b).toHex()),
            QString::fromLatin1(QByteArray::fromStdString(c).toHex())));
        const int ab = sign(compareTexts(a, b));
        QVERIFY2(sign(compareTexts(b, a)) == -ab, told);
        QVERIFY2((ab == 0) == textsEqual(a, b), told);
        QVERIFY2(ab != 0 || textHash(a) == textHash(b), told);
        QVERIFY2(ab > 0 || compareTexts(b, c) > 0 || compareTexts(a, c) <= 0, told);
        QVERIFY2(hasPatternCharacters(b) || textMatches(a, b) == textsEqual(a, b), told);
        QVERIFY2(
            textMatches(std::string(a).append(b).append(c), std::string(a).append("*").append(c)),
            told);
    }
}

void TestTextComparison::foldsAsUnicodeDoes()
{
    for (char32_t c = 1; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        const std::string letter = QString::fromUcs4(&c, 1).toStdString();
        const char32_t folded = QChar::toCaseFolded(c);
        const std::string same = QString::fromUcs4(&folded, 1).toStdString();
        if (!textsEqual(letter, same) || textHash(letter) != textHash(same)
            || compareTexts(letter, same) != 0)
            QFAIL(qPrintable(u"U+%1"_s.arg(uint{c}, 0, 16)));
    }
}

void TestTextComparison::matches_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("matching");
    QTest::addColumn<QStringList>("others");

    const auto row = [](const QString &pattern, const QString &matching, const QString &others) {
        QTest::newRow(qUtf8Printable(pattern + u' '))
            << pattern << matching.split(u'|') << others.split(u'|');
    };
    row(u""_s, u""_s, u"a| "_s);
    row(u"*🍲"_s, u"🍲|ab🍲"_s, u"|🍲a"_s);
    row(u"?"_s, u"a|É|🍲|가"_s, u"|ab"_s);
    row(u"crème"_s, u"CRÈME"_s, u"creme|crème |cr"_s);
    row(u"*E?"_s, u"eé|xxeéeX"_s, u"e|é|ée"_s);
    row(u"a*B*c"_s, u"abc|AxxBxxC|abcbc"_s, u"acb|ab|bc|abcd"_s);
    row(u"**a**"_s, u"a|xay"_s, u"|x"_s);
    row(u"?*?"_s, u"ab|abc"_s, u"|a"_s);
    row(u"[a]#%_"_s, u"[A]#%_"_s, u"a#%_|[a]1xx"_s);
}

void TestTextComparison::matches()
{
    QFETCH(const QString, pattern);
    QFETCH(const QStringList, matching);
    QFETCH(const QStringList, others);
    for (const QString &text : matching)
        QVERIFY2(textMatches(text.toStdString(), pattern.toStdString()), qUtf8Printable(text));
    for (const QString &text : others)
        QVERIFY2(!textMatches(text.toStdString(), pattern.toStdString()), qUtf8Printable(text));
    // Many runs that all fail late must not take time beyond measure.
    QVERIFY(!textMatches(std::string(20'000, 'a'), "*a*a*a*a*a*a*a*a*b"));
}

QTEST_GUILESS_MAIN(TestTextComparison)
#include "tst_textcomparison.moc"
