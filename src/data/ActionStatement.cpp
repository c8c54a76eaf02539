#include "data/ActionStatement.h"

#include "data/AsciiText.h"

namespace {

constexpr std::string_view blanks = " \t\r\n";

std::string_view withoutLeadingBlanks(std::string_view text)
{
    const std::size_t start = text.find_first_not_of(blanks);
    return start == std::string_view::npos ? std::string_view{} : text.substr(start);
}

} // namespace

std::string translatedStatement(std::string_view statement)
{
    constexpr std::string_view verb = "DELETE";
    const std::string_view start = withoutLeadingBlanks(statement);
    if (start.size() <= verb.size() || !equalAscii(start.substr(0, verb.size()), verb)
        || blanks.find(start[verb.size()]) == std::string_view::npos)
        return std::string(statement);

    const std::string_view columns = withoutLeadingBlanks(start.substr(verb.size()));
    const std::string_view word = columns.substr(0, columns.find_first_of(blanks));
    if (!word.ends_with(".*") || word.find_first_of("'\"") != std::string_view::npos)
        return std::string(statement);
    return std::string(verb) + std::string(columns.substr(word.size()));
}
