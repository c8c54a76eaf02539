#pragma once

#include <algorithm>
#include <string_view>

// Whether two names of tables or fields are the same; such names are ASCII and case does not count.
inline bool equalAscii(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [lower](char left, char right) { return lower(left) == lower(right); });
}
