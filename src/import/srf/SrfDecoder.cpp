#include "import/srf/SrfDecoder.h"

#include <algorithm>
#include <array>

namespace {

// Windows-1252 from 0x80 to 0x9F; everywhere else it is Latin-1.
constexpr std::array<char16_t, 32> windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

QChar fromWindows1252(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x80 && code < 0xA0 ? QChar(windows1252[code - 0x80]) : QChar(uint(code));
}

} // namespace

QString decodeSrf(QByteArrayView bytes)
{
    if (bytes.isValidUtf8())
        return QString::fromUtf8(bytes); // drops the byte order mark
    QString text(bytes.size(), Qt::Uninitialized);
    std::transform(bytes.begin(), bytes.end(), text.begin(), fromWindows1252);
    return text;
}
