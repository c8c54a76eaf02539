#include "export/SearchFile.h"

#include "export/PageNames.h"

#include <QString>

#include <algorithm>

namespace {

constexpr std::size_t longestLine = 99; // without its end
constexpr std::string_view extension = ".html";

// Whether the script derives the same words from the text as asciiWords(), whatever Unicode version
// the browser has.
bool isDerivable(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        constexpr char16_t latinEnd = 0x180;
        constexpr char16_t punctuation = 0x2010;
        constexpr char16_t punctuationEnd = 0x2028;
        return c.unicode() < latinEnd
            || (c.unicode() >= punctuation && c.unicode() < punctuationEnd);
    });
}

// Returns what the page's name adds to the words of the text, or "=" and the whole name.
std::string reference(const std::string &text, std::string_view prefix, std::string_view page)
{
    const QString title = QString::fromStdString(text);
    page.remove_suffix(extension.size());
    if (isDerivable(title)) {
        const std::string words = std::string(prefix) + asciiWords(title).toStdString();
        if (words.size() > prefix.size() && page.starts_with(words))
            return std::string(page.substr(words.size()));
    }
    return '=' + std::string(page);
}

// Shortens a text to this number of bytes or fewer.
std::string shortened(std::string text, std::size_t bytes)
{
    const std::string_view ellipsis = "…";
    std::size_t end = bytes - std::min(bytes, ellipsis.size());
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        --end; // into a character
    text.replace(end, std::string::npos, ellipsis);
    return text;
}

// Escapes what ends a template literal or is markup in HTML.
void appendEscaped(std::string &script, std::string_view text)
{
    for (const char c : text) {
        switch (c) {
        case '`':
        case '\\':
        case '$':
            script += '\\';
            script += c;
            break;
        case '<':
            script += "\\x3c";
            break;
        default:
            script += c;
        }
    }
}

// The title, a tab and the page; a second tab marks a vegetarian recipe.
void appendLine(std::string &script, const std::string &title, std::string_view prefix,
                std::string_view page, bool vegetarian = false)
{
    std::string text = title;
    std::string rest = reference(text, prefix, page);
    while (text.size() + rest.size() + 2 > longestLine) {
        text = shortened(text, longestLine - rest.size() - 2);
        rest = reference(text, prefix, page);
    }
    appendEscaped(script, text);
    script.append("\t").append(rest).append(vegetarian ? "\t\n" : "\n");
}

void appendEntries(std::string &script, const std::vector<ListEntry> &entries,
                   std::string_view prefix)
{
    for (const ListEntry &entry : entries)
        appendLine(script, entry.name, prefix, entry.page);
}

} // namespace

std::string searchFile(const SiteMap &site, bool withRecipes)
{
    std::string script = "pantrywiseSearch(`";
    if (withRecipes) {
        for (const RecipePosition position : site.byTitle) {
            const RecipeEntry &recipe = site.recipes[position];
            appendLine(script, recipe.title, "", recipe.page, recipe.vegetarian);
        }
    }
    script += "`,`";
    appendEntries(script, site.ingredients, "ingredient_");
    script += "`,`";
    appendEntries(script, site.types, "type_");
    return script + "`);\n";
}
