#include "import/srf/SrfFile.h"
#include "import/srf/SrfParser.h"

#include <QByteArrayList>

#include <cstdint>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// The lines of a file, found in a different way than the parser finds them.
QByteArrayList linesOf(QByteArray text)
{
    QByteArrayList lines = text.replace("\r\n", "\r").split('\r');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QByteArray bytes(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

bool isName(const QByteArray &name)
{
    return !name.isEmpty() && !name.contains('\0');
}

void checkError(const SrfError &error, const QByteArrayList &lines)
{
    const bool atEnd = error.kind == SrfError::Kind::EndOfFile;
    require(error.line >= 1);
    if (atEnd)
        require(error.line == lines.size() + 1);
    else
        require(error.line <= lines.size());
    if (error.kind == SrfError::Kind::UnexpectedLine)
        require(error.found.toUtf8() == lines.at(error.line - 1));
    const QString text = srfErrorText(error, u"Soup.srf"_s);
    require(text.startsWith(u"Soup.srf") && text.size() < 1500);
}

void checkIngredient(const SrfIngredient &ingredient, const QByteArrayList &lines)
{
    const QByteArray entry = bytes(ingredient.entry);
    require(isName(bytes(ingredient.name)));
    require(entry == lines.at(ingredient.line - 1));
    require(entry.startsWith(bytes(ingredient.name) + '|'));
    require(entry.endsWith("||" + bytes(ingredient.quantity)));

    const auto result = newIngredient(ingredient);
    const auto *fields = std::get_if<SrfNewIngredient>(&result);
    if (!fields) {
        checkError(std::get<SrfError>(result), lines);
        return;
    }
    const QByteArrayList parts{bytes(ingredient.name), bytes(fields->type),
                               bytes(fields->shelfLife), bytes(fields->vegetarian)};
    require(!parts.contains(QByteArray()));
    require(entry.startsWith(parts.join('|') + '|'));
}

void checkRecipe(const SrfRecipe &recipe, const QByteArrayList &lines)
{
    require(isName(bytes(recipe.name)));
    const QByteArrayList heading{bytes(recipe.name), bytes(recipe.author), bytes(recipe.type),
                                 bytes(recipe.serves), bytes(recipe.description)};
    require(heading == lines.mid(1, 5));
    require(bytes(recipe.type) == lines.at(SrfRecipe::typeLine - 1));
    require(bytes(recipe.serves) == lines.at(SrfRecipe::servesLine - 1));

    const auto first = lines.indexOf("<Instructions>", 6) + 1;
    const auto end = lines.indexOf("</Instructions>", first);
    QByteArray instructions;
    for (const QByteArray &line : lines.mid(first, end - first))
        instructions += (line.count(' ') == line.size() ? "\r\n\r\n" : line) + "\r\n";
    require(bytes(recipe.instructions) == instructions);

    for (const SrfIngredient &ingredient : recipe.ingredients)
        checkIngredient(ingredient, lines);
    for (const SrfUtensil &utensil : recipe.utensils)
        require(isName(bytes(utensil.name)) && bytes(utensil.name) == lines.at(utensil.line - 1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text =
        decodeSrf(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    const QByteArrayList lines = linesOf(text);
    const auto result = parseSrf(text);
    if (const auto *recipe = std::get_if<SrfRecipe>(&result))
        checkRecipe(*recipe, lines);
    else
        checkError(std::get<SrfError>(result), lines);
    return 0;
}
