#pragma once

#include <cstddef>
#include <string_view>

// The one definition of equality and order of texts, used by searches, indexes and the database's
// own sorting: without regard to case (simple case folding, for all of Unicode), accents count.
// Texts are UTF-8; a byte that is none counts as a character of its own, so that any bytes have an
// order. Nothing is normalised.

bool textsEqual(std::string_view a, std::string_view b);

// Less than, equal to or greater than 0. Base letters decide first and accents only between texts
// of the same base letters, so that an accented letter stands beside the bare one.
int compareTexts(std::string_view a, std::string_view b);

// Equal texts have equal hashes.
std::size_t textHash(std::string_view text);

// Whether the text matches a pattern in which * stands for any run and ? for one character.
bool textMatches(std::string_view text, std::string_view pattern);
bool hasPatternCharacters(std::string_view pattern);
