#pragma once

#include "oldfiles/Bytes.h"

#include <string>
#include <vector>

namespace oldfiles {

// Appends text in UTF-16 as UTF-8. Half of a surrogate pair becomes U+FFFD. Throws Damage if the
// last letter is not complete.
void appendUtf16(Bytes text, std::string &utf8);

// Whether the text is compressed. `expand` then makes UTF-16 of it.
bool isCompressed(Bytes text);
void expand(Bytes compressed, std::vector<char> &utf16);

} // namespace oldfiles
