#include "import/NumberErrors.h"

#include "data/FieldValue.h"
#include "data/TextComparison.h"

#include <QCoreApplication>

#include <string>
#include <unordered_set>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(NumberErrors)
};

// A set of names that compares them as the database does.
struct NameHash {
    std::size_t operator()(const std::string &name) const { return textHash(name); }
};
struct NameEqual {
    bool operator()(const std::string &a, const std::string &b) const { return textsEqual(a, b); }
};
using NameSet = std::unordered_set<std::string, NameHash, NameEqual>;

std::optional<SrfError> headingError(const SrfRecipe &recipe)
{
    if (!convertToField(FieldType::WholeNumber, recipe.type))
        return SrfError{SrfRecipe::typeLine, Text::tr("the number of a recipe type"), recipe.type};
    if (!convertToField(FieldType::Number, recipe.serves))
        return SrfError{SrfRecipe::servesLine, Text::tr("the number of servings"), recipe.serves};
    return {};
}

std::optional<SrfError> ingredientError(const SrfIngredient &entry)
{
    const std::variant<SrfNewIngredient, SrfError> read = newIngredient(entry);
    if (const auto *error = std::get_if<SrfError>(&read))
        return *error;
    const auto &fields = std::get<SrfNewIngredient>(read);
    if (!convertToField(FieldType::WholeNumber, fields.type))
        return SrfError{entry.line, Text::tr("the number of an ingredient type"), fields.type};
    if (!convertToField(FieldType::Number, fields.shelfLife))
        return SrfError{entry.line, Text::tr("a shelf life in days"), fields.shelfLife};
    if (!convertToField(FieldType::YesNo, fields.vegetarian))
        return SrfError{entry.line, Text::tr("True or False for vegetarian"), fields.vegetarian};
    return {};
}

} // namespace

NumberErrors findNumberErrors(const SrfRecipe &recipe)
{
    NumberErrors errors{headingError(recipe), {}};
    NameSet names;
    for (const SrfIngredient &entry : recipe.ingredients) {
        if (!names.insert(entry.name.toStdString()).second)
            continue;
        if (std::optional<SrfError> error = ingredientError(entry))
            errors.ingredients.push_back({entry.name, *std::move(error)});
    }
    return errors;
}
