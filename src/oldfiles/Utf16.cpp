#include "oldfiles/Utf16.h"

#include <QChar>

namespace oldfiles {
namespace {

constexpr std::size_t unit = sizeof(char16_t);
constexpr quint16 compressionMark = 0xFEFF;

char byteOf(char32_t bits)
{
    return static_cast<char>(bits);
}

// NOLINTBEGIN(readability-magic-numbers): the lead bytes of UTF-8
void appendBeyondAscii(char32_t letter, std::string &utf8)
{
    const auto trailing = [letter](unsigned shift) {
        return byteOf(0x80U | (letter >> shift & 0x3FU));
    };
    if (letter < 0x800)
        utf8 += {byteOf(0xC0U | letter >> 6U), trailing(0)};
    else if (letter < 0x10000)
        utf8 += {byteOf(0xE0U | letter >> 12U), trailing(6), trailing(0)};
    else
        utf8 += {byteOf(0xF0U | letter >> 18U), trailing(12), trailing(6), trailing(0)};
}
// NOLINTEND(readability-magic-numbers)

} // namespace

void appendUtf16(Bytes text, std::string &utf8)
{
    constexpr char16_t asciiEnd = 0x80;
    require(text.size() % unit == 0);
    const char *const end = text.data() + text.size();
    for (const char *at = text.data(); at != end; at += unit) {
        const auto letter = qFromLittleEndian<char16_t>(at);
        if (letter < asciiEnd) {
            utf8 += static_cast<char>(letter);
        } else if (!QChar::isSurrogate(letter)) {
            appendBeyondAscii(letter, utf8);
        } else if (const char *const next = at + unit; QChar::isHighSurrogate(letter) && next != end
                   && QChar::isLowSurrogate(qFromLittleEndian<char16_t>(next))) {
            appendBeyondAscii(QChar::surrogateToUcs4(letter, qFromLittleEndian<char16_t>(next)),
                              utf8);
            at = next;
        } else {
            appendBeyondAscii(QChar::ReplacementCharacter, utf8);
        }
    }
}

bool isCompressed(Bytes text)
{
    return text.size() >= unit && text.read<quint16>(0) == compressionMark;
}

// After the mark, each letter is one byte. A zero byte switches to two bytes a letter, and back.
void expand(Bytes compressed, std::vector<char> &utf16)
{
    utf16.clear();
    bool isOneByte = true;
    const std::span<const char> bytes = compressed.from(unit).span();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == 0) {
            isOneByte = !isOneByte;
        } else if (isOneByte) {
            utf16.push_back(bytes[i]);
            utf16.push_back(0);
        } else {
            require(i + 1 < bytes.size());
            utf16.push_back(bytes[i]);
            utf16.push_back(bytes[++i]);
        }
    }
}

} // namespace oldfiles
