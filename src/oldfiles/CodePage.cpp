#include "oldfiles/CodePage.h"

#include <QCoreApplication>

#include <algorithm>
#include <cerrno>
#include <iconv.h>

namespace oldfiles {
namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(CodePage)
};

void *openConverter(quint16 number)
{
    const std::string name = "CP" + std::to_string(number);
    void *const converter = ::iconv_open("UTF-8", name.c_str());
    // iconv_open() reports a failure as (iconv_t)-1.
    if (converter == reinterpret_cast<void *>(-1)) // NOLINT(performance-no-int-to-ptr)
        throw Error(Text::tr("The texts of this file are in code page %1, which is not known here.")
                        .arg(number));
    return converter;
}

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
    for (unsigned value = 0; value < m_letters.size(); ++value) {
        const char byte = static_cast<char>(value);
        Letter &letter = m_letters[value];
        letter = convert(m_converter.get(), {&byte, 1});
        if (letter.size == 0 && !letter.isIncomplete)
            letter = controlCharacter(value);
    }
}

CodePage::Letter CodePage::controlCharacter(unsigned value)
{
    constexpr unsigned asciiEnd = 0x80;
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
        if (letter.size == 0 && i + 1 < bytes.size()) {
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
