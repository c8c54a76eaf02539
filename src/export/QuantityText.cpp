#include "export/QuantityText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <initializer_list>

using namespace std::literals;

namespace {

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos
        ? std::string_view()
        : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The words must be in lower case.
bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words)
{
    const auto equalsWord = [word](std::string_view known) {
        return std::equal(word.begin(), word.end(), known.begin(), known.end(), [](char a, char b) {
            return std::tolower(static_cast<unsigned char>(a)) == b;
        });
    };
    return std::any_of(words.begin(), words.end(), equalsWord);
}

std::string_view firstWord(std::string_view text)
{
    return text.substr(0, text.find(' '));
}

std::string_view lastWord(std::string_view text)
{
    return text.substr(text.rfind(' ') + 1); // all of it if there is no space
}

// A digit, or a character such as ½.
bool beginsWithNumber(std::string_view text)
{
    constexpr std::array fractions{"¼"sv, "½"sv, "¾"sv, "⅓"sv, "⅔"sv, "⅛"sv, "⅜"sv, "⅝"sv, "⅞"sv};
    return !text.empty()
        && ((text.front() >= '0' && text.front() <= '9')
            || std::any_of(fractions.begin(), fractions.end(),
                           [text](std::string_view known) { return text.starts_with(known); }));
}

// Whether the text has a number, or begins with one of the units of frmChangeIngredients, which can
// have no amount.
bool isMeasure(std::string_view text)
{
    if (isOneOf(firstWord(text),
                {"a", "an", "one", "tsp", "tbsp", "cup", "ml", "l", "oz", "fl", "quart", "gram",
                 "kilogram", "lb", "pinch", "handfull", "dash", "sprig", "clove"}))
        return true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (beginsWithNumber(text.substr(i)))
            return true;
    }
    return false;
}

// Returns the position after the parenthesis that opens at `open`, also if it is not closed.
std::size_t afterParenthesis(std::string_view text, std::size_t open)
{
    int depth = 0;
    for (std::size_t i = open; i < text.size(); ++i) {
        if (text[i] == '(')
            ++depth;
        else if (text[i] == ')' && --depth == 0)
            return i + 1;
    }
    return text.size();
}

// Whether a parenthesis is about the ingredient. If a word follows, as in "1 (7 oz) can", or if it
// repeats the measure before it, as in "28 oz (825 ml)", it belongs to the amount.
bool isRemark(std::string_view text, std::size_t open, std::size_t close)
{
    const std::string_view content = trimmed(text.substr(open + 1, close - open - 1));
    const std::string_view after = trimmed(text.substr(close));
    const bool endsThere = after.empty() || ",.;:("sv.find(after.front()) != std::string_view::npos;
    return endsThere && (open == 0 || (!content.starts_with('~') && !beginsWithNumber(content)));
}

// Returns the position of the comma, the semicolon or the parenthesis with which the preparation
// begins, or the size of the text if it has no preparation.
std::size_t endOfAmount(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        if (character == '(') {
            const std::size_t close = afterParenthesis(text, i);
            if ((i == 0 || text[i - 1] == ' ') && isRemark(text, i, close))
                return i;
            i = close - 1;
        } else if (character == ';'
                   || (character == ',' && !beginsWithNumber(text.substr(i + 1)))) {
            // Without a measure it is a list of names: "tomato, lettuce".
            return isMeasure(text.substr(0, i)) ? i : text.size();
        }
    }
    return text.size();
}

// The preparations of frmChangeIngredients, which puts them last.
bool isPreparation(std::string_view word)
{
    return isOneOf(word, {"chopped", "diced", "sliced", "cubed", "ground", "minced", "grated"});
}

// Returns the length of the amount without a preparation that ends it: "finely chopped",
// "minced or diced".
std::size_t sizeWithoutPreparation(std::string_view amount)
{
    if (!isPreparation(lastWord(amount)))
        return amount.size();
    std::string_view rest = amount;
    for (std::string_view word = lastWord(rest); !word.empty(); word = lastWord(rest)) {
        if (!isPreparation(word) && !word.ends_with("ly") && !isOneOf(word, {"and", "or"}))
            break;
        rest = trimmed(rest.substr(0, rest.size() - word.size()));
    }
    return rest.empty() || isMeasure(rest) ? rest.size() : amount.size();
}

// Returns the preparation with a space before its parenthesis, or with a comma if it has neither.
std::string withPunctuation(std::string_view preparation)
{
    if (preparation.empty())
        return {};
    if (preparation.front() == '(')
        return std::string(" ").append(preparation);
    const bool hasOwn = preparation.front() == ',' || preparation.front() == ';';
    const std::string_view words = trimmed(preparation.substr(hasOwn ? 1 : 0));
    if (words.empty())
        return {};
    return std::string(preparation.front() == ';' ? "; " : ", ").append(words);
}

} // namespace

SplitQuantity splitQuantity(std::string_view quantity)
{
    const std::string_view text = trimmed(quantity);
    if (isOneOf(firstWord(text), {"to", "for"})) // "to taste", "for frying"
        return {{}, withPunctuation(text)};
    const std::size_t end = endOfAmount(text);
    const std::string_view amount = trimmed(text.substr(0, end));
    std::string preparation = withPunctuation(text.substr(end));
    const std::size_t size = sizeWithoutPreparation(amount);
    if (size < amount.size())
        preparation.insert(0, withPunctuation(trimmed(amount.substr(size))));
    return {std::string(amount.substr(0, size)), std::move(preparation)};
}

std::string ingredientLine(const SplitQuantity &quantity, std::string_view name)
{
    std::string line = quantity.amount;
    if (!line.empty())
        line += ' ';
    return line.append(name).append(quantity.preparation);
}
