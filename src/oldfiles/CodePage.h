#pragma once

#include "oldfiles/Bytes.h"

#include <array>
#include <memory>
#include <string>

namespace oldfiles {

// The 8-bit text of Jet 3: in a code page of Windows or DOS, with one or two bytes for a letter.
class CodePage
{
public:
    explicit CodePage(quint16 number);

    quint16 number() const { return m_number; }

    // Whether the C library can convert it. If not, only ASCII is readable, which is enough for the
    // names of tables and columns.
    bool isKnown() const { return m_converter != nullptr; }

    // Appends the text as UTF-8. A byte that the code page leaves undefined becomes the control
    // character of this number, as Windows has it. The first byte of a letter of two bytes becomes
    // U+FFFD if the second one is missing or does not go with it.
    void append(Bytes text, std::string &utf8) const;

private:
    struct Letter {
        std::array<char, 8> utf8{};
        std::size_t size = 0; // 0 if the bytes are no letter
        bool isIncomplete = false; // the bytes are the beginning of one
    };

    struct Close {
        void operator()(void *converter) const;
    };

    Letter letterOf(unsigned value) const;
    static Letter controlCharacter(unsigned value);
    static Letter convert(void *converter, std::span<const char> bytes);

    quint16 m_number;
    std::unique_ptr<void, Close> m_converter; // an iconv_t, which is a pointer
    std::array<Letter, 256> m_letters; // of each first byte
};

} // namespace oldfiles
