#include "oldfiles/Utf16.h"

#include <QStringEncoder>
#include <QVarLengthArray>
#include <QtEndian>

namespace oldfiles {
namespace {

constexpr std::size_t unit = sizeof(char16_t);
constexpr quint16 compressionMark = 0xFEFF;

} // namespace

void appendUtf16(Bytes text, std::string &utf8)
{
    constexpr qsizetype usualLength = 1024;
    require(text.size() % unit == 0);
    // The text may be at an odd address, where QStringEncoder cannot read it.
    QVarLengthArray<char16_t, usualLength> letters(static_cast<qsizetype>(text.size() / unit));
    qFromLittleEndian<char16_t>(text.data(), letters.size(), letters.data());

    // A stateful encoder would keep half a pair at the end for the next text.
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    const std::size_t before = utf8.size();
    utf8.resize(before + static_cast<std::size_t>(encoder.requiredSpace(letters.size())));
    const char *const end = encoder.appendToBuffer(utf8.data() + before, QStringView(letters));
    utf8.resize(static_cast<std::size_t>(end - utf8.data()));
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
