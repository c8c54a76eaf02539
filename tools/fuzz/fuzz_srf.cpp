#include "import/srf/SrfFile.h"
#include "import/srf/SrfParser.h"

#include <QStringList>

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
QStringList linesOf(const QString &text)
{
    QStringList lines = QString(text).replace("\r\n"_L1, "\r"_L1).split(u'\r');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

bool isName(const QString &name)
{
    return !name.isEmpty() && !name.contains(QChar::Null);
}

void checkError(const SrfError &error, const QStringList &lines)
{
    const bool atEnd = error.kind == SrfError::Kind::EndOfFile;
    require(error.line >= 1);
    if (atEnd)
        require(error.line == lines.size() + 1);
    else
        require(error.line <= lines.size());
    if (error.kind == SrfError::Kind::UnexpectedLine)
        require(error.found == lines.at(error.line - 1));
    const QString text = srfErrorText(error, u"Soup.srf"_s);
    require(text.startsWith(u"Soup.srf") && text.size() < 1500);
}

void checkIngredient(const SrfIngredient &ingredient, const QStringList &lines)
{
    require(isName(ingredient.name));
    require(ingredient.entry == lines.at(ingredient.line - 1));
    require(ingredient.entry.startsWith(ingredient.name + u'|'));
    require(ingredient.entry.endsWith("||"_L1 + ingredient.quantity));

    const auto result = newIngredient(ingredient);
    const auto *fields = std::get_if<SrfNewIngredient>(&result);
    if (!fields) {
        checkError(std::get<SrfError>(result), lines);
        return;
    }
    const QStringList parts{ingredient.name, fields->type, fields->shelfLife, fields->vegetarian};
    require(!parts.contains(QString()));
    require(ingredient.entry.startsWith(parts.join(u'|') + u'|'));
}

void checkRecipe(const SrfRecipe &recipe, const QStringList &lines)
{
    require(isName(recipe.name));
    require(
        QStringList({recipe.name, recipe.author, recipe.type, recipe.serves, recipe.description})
        == lines.mid(1, 5));
    require(recipe.type == lines.at(SrfRecipe::typeLine - 1));
    require(recipe.serves == lines.at(SrfRecipe::servesLine - 1));

    const auto first = lines.indexOf(u"<Instructions>"_s, 6) + 1;
    const auto end = lines.indexOf(u"</Instructions>"_s, first);
    QString instructions;
    for (const QString &line : lines.mid(first, end - first))
        instructions += (line.count(u' ') == line.size() ? u"\r\n\r\n"_s : line) + u"\r\n"_s;
    require(recipe.instructions == instructions);

    for (const SrfIngredient &ingredient : recipe.ingredients)
        checkIngredient(ingredient, lines);
    for (const SrfUtensil &utensil : recipe.utensils)
        require(isName(utensil.name) && utensil.name == lines.at(utensil.line - 1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = decodeSrf({data, static_cast<qsizetype>(size)});
    const QStringList lines = linesOf(text);
    const auto result = parseSrf(text);
    if (const auto *recipe = std::get_if<SrfRecipe>(&result))
        checkRecipe(*recipe, lines);
    else
        checkError(std::get<SrfError>(result), lines);
    return 0;
}
