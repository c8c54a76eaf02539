#include "export/StepNumber.h"

#include <algorithm>
#include <array>
#include <cctype>

using namespace std::literals;

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

void skipSpaces(std::string_view &text)
{
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
}

// Removes the word and what separates it from a number.
bool skipStepWord(std::string_view &text)
{
    constexpr std::array words{"step"sv, "schritt"sv, "paso"sv, "passo"sv, "stap"sv, "steg"sv};
    const auto matches = [text](std::string_view word) {
        return text.size() > word.size()
            && std::equal(word.begin(), word.end(), text.begin(), [](char known, char character) {
                   return std::tolower(static_cast<unsigned char>(character)) == known;
               });
    };
    const auto *const found = std::find_if(words.begin(), words.end(), matches);
    if (found == words.end())
        return false;
    text.remove_prefix(found->size());
    skipSpaces(text);
    return true;
}

} // namespace

bool beginsWithStepNumber(std::string_view paragraph)
{
    std::string_view text = paragraph;
    if (text.starts_with('(') || text.starts_with('#'))
        text.remove_prefix(1);
    const bool hasWord = skipStepWord(text);
    const auto *const end = std::find_if_not(text.begin(), text.end(), isDigit);
    const auto digits = static_cast<std::size_t>(end - text.begin());
    constexpr std::size_t mostDigits = 3;
    if (digits == 0 || digits > mostDigits)
        return false;
    text.remove_prefix(digits);
    if (hasWord)
        return true;
    skipSpaces(text);
    if (text.empty() || ".):-"sv.find(text.front()) == std::string_view::npos)
        return false;
    const bool isRange = text.front() == '-'; // unless no number follows
    text.remove_prefix(1);
    if (isRange)
        skipSpaces(text);
    return text.empty() || !isDigit(text.front());
}
