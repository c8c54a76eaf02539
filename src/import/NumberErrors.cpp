#include "import/NumberErrors.h"

#include "data/FieldValue.h"
#include "platform/Utf8.h"

#include <QCoreApplication>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(NumberErrors)
};

SrfError errorAt(int line, const QString &expected, std::string_view found)
{
    return {line, expected, platform::decodeUtf8(found)};
}

} // namespace

std::optional<SrfError> headingError(const SrfRecipe &recipe)
{
    if (!convertToField(FieldType::WholeNumber, recipe.type))
        return errorAt(SrfRecipe::typeLine, Text::tr("the number of a recipe type"), recipe.type);
    if (!convertToField(FieldType::Number, recipe.serves))
        return errorAt(SrfRecipe::servesLine, Text::tr("the number of servings"), recipe.serves);
    return {};
}

std::optional<SrfError> newIngredientError(const SrfIngredient &ingredient)
{
    const std::variant<SrfNewIngredient, SrfError> read = newIngredient(ingredient);
    if (const auto *error = std::get_if<SrfError>(&read))
        return *error;
    const auto &fields = std::get<SrfNewIngredient>(read);
    if (!convertToField(FieldType::WholeNumber, fields.type))
        return errorAt(ingredient.line, Text::tr("the number of an ingredient type"), fields.type);
    if (!convertToField(FieldType::Number, fields.shelfLife))
        return errorAt(ingredient.line, Text::tr("a shelf life in days"), fields.shelfLife);
    if (!convertToField(FieldType::YesNo, fields.vegetarian))
        return errorAt(ingredient.line, Text::tr("True or False for vegetarian"),
                       fields.vegetarian);
    return {};
}
