#include "data/TextComparison.h"

#include <QChar>
#include <QList>
#include <QString>

#include <algorithm>
#include <array>
#include <vector>

namespace {

struct Folding {
    char32_t letter; // case folded
    char32_t base; // the same without accents
};

// Case folding and base letters as a table of pages. A page whose characters all fold to
// themselves, as on most pages, is not stored.
class FoldingTable
{
public:
    FoldingTable();

    Folding operator[](char32_t c) const
    {
        if (c >= end || m_pageOf[c / pageSize] == 0)
            return {c, c};
        return m_pages[m_pageOf[c / pageSize] - 1U][c % pageSize];
    }

private:
    static constexpr char32_t pageSize = 256;
    static constexpr char32_t end = 0x1EA00; // all characters from here on fold to themselves

    std::array<quint8, end / pageSize> m_pageOf{};
    std::vector<std::array<Folding, pageSize>> m_pages;
};

char32_t baseLetter(char32_t c)
{
    // A Hangul syllable decomposes into letters instead of a letter and its accents.
    constexpr char32_t firstHangul = 0xAC00;
    constexpr char32_t lastHangul = 0xD7A3;
    if (c >= firstHangul && c <= lastHangul)
        return c;
    while (QChar::decompositionTag(c) == QChar::Canonical)
        c = QChar::decomposition(c).toUcs4().constFirst();
    return c;
}

FoldingTable::FoldingTable()
{
    for (char32_t first = 0; first < end; first += pageSize) {
        std::array<Folding, pageSize> page;
        bool folds = false;
        for (char32_t i = 0; i < pageSize; ++i) {
            const char32_t letter = QChar::toCaseFolded(first + i);
            page[i] = {letter, QChar::toCaseFolded(baseLetter(letter))};
            folds = folds || letter != first + i || page[i].base != letter;
        }
        if (folds) {
            m_pages.push_back(page);
            m_pageOf[first / pageSize] = static_cast<quint8>(m_pages.size());
        }
    }
}

Folding folding(char32_t c)
{
    static const FoldingTable table;
    return table[c];
}

constexpr unsigned char asciiFolded(unsigned char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

// Iterates over the characters of a UTF-8 text.
class Characters
{
public:
    explicit Characters(std::string_view text)
        : m_at(reinterpret_cast<const unsigned char *>(text.data()))
        , m_end(m_at + text.size())
    {
    }

    bool atEnd() const { return m_at == m_end; }
    bool atAscii() const { return m_at != m_end && *m_at < 0x80; }
    unsigned char nextAscii() { return *m_at++; }

    char32_t next()
    {
        const unsigned char lead = *m_at++;
        if (lead < 0x80)
            return lead;
        const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        if (lead < 0xC2 || lead > 0xF4 || m_end - m_at < more)
            return invalidByte(lead);
        char32_t c = lead & (0x3FU >> more);
        for (int i = 0; i < more; ++i) {
            if ((m_at[i] & 0xC0U) != 0x80U)
                return invalidByte(lead);
            c = (c << 6U) | (m_at[i] & 0x3FU);
        }
        constexpr std::array<char32_t, 4> smallest = {0, 0x80, 0x800, 0x10000};
        if (c < smallest[static_cast<std::size_t>(more)] || c > 0x10FFFF)
            return invalidByte(lead);
        m_at += more;
        return c;
    }

private:
    // Outside Unicode, so that an invalid byte equals no character.
    static char32_t invalidByte(unsigned char byte) { return 0x110000U + byte; }

    const unsigned char *m_at;
    const unsigned char *m_end;
};

bool isContinuation(std::string_view text, std::size_t at)
{
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
}

// Collects eight bytes after the first `skipped` ones.
class PrefixBytes
{
public:
    explicit PrefixBytes(std::size_t skipped)
        : m_skipped(skipped)
    {
    }

    bool isFull() const { return m_shift < 0; }
    quint64 value() const { return m_value; }

    void add(char32_t byte)
    {
        if (m_skipped > 0) {
            --m_skipped;
        } else if (!isFull()) {
            m_value |= quint64{byte & 0xFFU} << m_shift;
            m_shift -= 8;
        }
    }

    // Adds the UTF-8 of the character. It has the order of the characters, which what is added for
    // an invalid byte follows.
    void addCharacter(char32_t c)
    {
        if (c < 0x80) {
            add(c);
        } else if (c > 0x10FFFF) {
            add(0xFF);
            add(c);
        } else {
            const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
            add((0xFF00U >> (more + 1)) | (c >> (6 * more)));
            for (int shift = 6 * (more - 1); shift >= 0; shift -= 6)
                add(0x80U | (c >> shift & 0x3FU));
        }
    }

private:
    std::size_t m_skipped;
    int m_shift = 56;
    quint64 m_value = 0;
};

// The length in bytes of the whole characters with which both texts begin.
std::size_t commonPrefix(std::string_view a, std::string_view b)
{
    const auto differing = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
    auto size = static_cast<std::size_t>(differing - a.begin());
    while (size > 0 && (isContinuation(a, size) || isContinuation(b, size)))
        --size;
    return size;
}

} // namespace

bool textsEqual(std::string_view a, std::string_view b)
{
    Characters left(a);
    Characters right(b);
    while (!left.atEnd() && !right.atEnd()) {
        if (left.atAscii() && right.atAscii()) {
            if (asciiFolded(left.nextAscii()) != asciiFolded(right.nextAscii()))
                return false;
        } else if (folding(left.next()).letter != folding(right.next()).letter) {
            return false;
        }
    }
    return left.atEnd() && right.atEnd();
}

int compareTexts(std::string_view a, std::string_view b)
{
    const std::size_t same = commonPrefix(a, b);
    Characters left(a.substr(same));
    Characters right(b.substr(same));
    int byAccent = 0;
    while (!left.atEnd() && !right.atEnd()) {
        if (left.atAscii() && right.atAscii()) {
            const int difference = asciiFolded(left.nextAscii()) - asciiFolded(right.nextAscii());
            if (difference != 0)
                return difference;
            continue;
        }
        const Folding l = folding(left.next());
        const Folding r = folding(right.next());
        if (l.base != r.base)
            return l.base < r.base ? -1 : 1;
        if (byAccent == 0 && l.letter != r.letter)
            byAccent = l.letter < r.letter ? -1 : 1;
    }
    if (!left.atEnd())
        return 1;
    return right.atEnd() ? byAccent : -1;
}

quint64 textPrefix(std::string_view text, std::size_t from)
{
    PrefixBytes bytes(from);
    for (Characters characters(text); !characters.atEnd() && !bytes.isFull();) {
        if (characters.atAscii())
            bytes.add(asciiFolded(characters.nextAscii()));
        else
            bytes.addCharacter(folding(characters.next()).base);
    }
    return bytes.value();
}

std::size_t textHash(std::string_view text)
{
    quint64 hash = 0xcbf29ce484222325U;
    for (Characters characters(text); !characters.atEnd();) {
        const char32_t c = characters.atAscii() ? asciiFolded(characters.nextAscii())
                                                : folding(characters.next()).letter;
        hash = (hash ^ c) * 0x100000001b3U;
    }
    return hash ^ (hash >> 32U);
}

bool textMatches(std::string_view text, std::string_view pattern)
{
    Characters t(text);
    Characters p(pattern);
    // A * first matches as little as possible. After a mismatch it matches one character more, and
    // the comparison continues from these two places.
    Characters afterRun(std::string_view{});
    Characters runEnd(std::string_view{});
    bool inRun = false;
    while (true) {
        if (!p.atEnd()) {
            Characters rest = p;
            const char32_t wanted = rest.next();
            if (wanted == '*') {
                p = rest;
                afterRun = p;
                runEnd = t;
                inRun = true;
                continue;
            }
            if (!t.atEnd()) {
                Characters textRest = t;
                const char32_t c = textRest.next();
                if (wanted == '?' || folding(wanted).letter == folding(c).letter) {
                    p = rest;
                    t = textRest;
                    continue;
                }
            }
        } else if (t.atEnd()) {
            return true;
        }
        if (!inRun || runEnd.atEnd())
            return false;
        runEnd.next();
        t = runEnd;
        p = afterRun;
    }
}

bool hasPatternCharacters(std::string_view pattern)
{
    return pattern.find_first_of("*?") != std::string_view::npos;
}
