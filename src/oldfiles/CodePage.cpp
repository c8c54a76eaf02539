#include "oldfiles/CodePage.h"

#include <algorithm>
#include <cerrno>
#include <iconv.h>

namespace oldfiles {
namespace {

void *openConverter(quint16 number)
{
    const std::string name = "CP" + std::to_string(number);
    void *const converter = ::iconv_open("UTF-8", name.c_str());
    // iconv_open() reports a failure as (iconv_t)-1.
    const bool isOpen =
        converter != reinterpret_cast<void *>(-1); // NOLINT(performance-no-int-to-ptr)
    return isOpen ? converter : nullptr;
}

constexpr unsigned asciiEnd = 0x80;
constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

} // namespace

void CodePage::Close::operator()(void *converter) const
{
    ::iconv_close(converter);
}

CodePage::CodePage(quint16 number)
    : m_number(number)
    , m_converter(openConverter(number))
{
    for (unsigned value = 0; value < m_letters.size(); ++value)
        m_letters[value] = letterOf(value);
}

// Returns the letter of one byte; it is empty if the byte is the beginning of a letter of two.
CodePage::Letter CodePage::letterOf(unsigned value) const
{
    if (!isKnown())
        return value < asciiEnd ? controlCharacter(value) : Letter();
    const char byte = static_cast<char>(value);
    const Letter letter = convert(m_converter.get(), {&byte, 1});
    return letter.size == 0 && !letter.isIncomplete ? controlCharacter(value) : letter;
}

CodePage::Letter CodePage::controlCharacter(unsigned value)
{
    constexpr unsigned firstOfTwo = 0xC0;
    constexpr unsigned secondOfTwo = 0x80;
    constexpr unsigned bits = 6; // in the second byte
    Letter letter;
    if (value < asciiEnd) {
        letter.utf8 = {static_cast<char>(value)};
        letter.size = 1;
    } else {
        letter.utf8 = {static_cast<char>(firstOfTwo | value >> bits),
                       static_cast<char>(secondOfTwo | (value & ((1U << bits) - 1)))};
        letter.size = 2;
    }
    return letter;
}

CodePage::Letter CodePage::convert(void *converter, std::span<const char> bytes)
{
    Letter letter;
    auto *from = const_cast<char *>(bytes.data()); // iconv() does not write to it
    std::size_t left = bytes.size();
    char *to = letter.utf8.data();
    std::size_t room = letter.utf8.size();
    const bool isConverted =
        ::iconv(converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
    letter.isIncomplete = !isConverted && errno == EINVAL;
    // iconv() holds back a letter that an accent may follow (1255, 1258) until it is told the end.
    ::iconv(converter, nullptr, nullptr, &to, &room);
    if (isConverted)
        letter.size = letter.utf8.size() - room;
    return letter;
}

void CodePage::append(Bytes text, std::string &utf8) const
{
    const std::span<const char> bytes = text.span();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        Letter letter = m_letters[static_cast<unsigned char>(bytes[i])];
        if (letter.size == 0 && isKnown() && i + 1 < bytes.size()) {
            letter = convert(m_converter.get(), bytes.subspan(i, 2));
            if (letter.size > 0)
                ++i;
        }
        if (letter.size > 0)
            utf8.append(letter.utf8.data(), letter.size);
        else
            utf8.append(replacementCharacter);
    }
}

} // namespace oldfiles
