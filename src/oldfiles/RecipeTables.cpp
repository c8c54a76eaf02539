#include "oldfiles/RecipeTables.h"

#include <array>

namespace oldfiles {
namespace {

constexpr std::array recipes = {
    Column{"RecipeID", ValueKind::Number},   Column{"RecipeName", ValueKind::Text},
    Column{"Description", ValueKind::Text},  Column{"Author", ValueKind::Text},
    Column{"RecipeType", ValueKind::Number}, Column{"Instructions", ValueKind::Text},
    Column{"Rating", ValueKind::Number},     Column{"Serves", ValueKind::Number},
};

constexpr std::array ingredients = {
    Column{"IngredientID", ValueKind::Number},   Column{"IngredientName", ValueKind::Text},
    Column{"IngredientType", ValueKind::Number}, Column{"ShelfLife", ValueKind::Number},
    Column{"Vegetarian", ValueKind::YesNo},
};

constexpr std::array utensils = {
    Column{"UtensilID", ValueKind::Number},
    Column{"UtensilName", ValueKind::Text},
};

constexpr std::array recipeIngredients = {
    Column{"RecipeID", ValueKind::Number},
    Column{"IngredientID", ValueKind::Number},
    Column{"Quantity", ValueKind::Text},
};

constexpr std::array recipeUtensils = {
    Column{"RecipeID", ValueKind::Number},
    Column{"UtensilID", ValueKind::Number},
};

constexpr std::array tables = {
    TableLayout{"Recipes", recipes},
    TableLayout{"Ingredients", ingredients},
    TableLayout{"Utensils", utensils},
    TableLayout{"RecipeIngredients", recipeIngredients},
    TableLayout{"RecipeUtensils", recipeUtensils},
};

QLatin1StringView toLatin1View(std::string_view name)
{
    return QLatin1StringView(name.data(), static_cast<qsizetype>(name.size()));
}

} // namespace

std::span<const TableLayout> recipeTables()
{
    return tables;
}

bool isSameName(const QString &stored, std::string_view name)
{
    return stored.compare(toLatin1View(name), Qt::CaseInsensitive) == 0;
}

QString toText(std::string_view name)
{
    return toLatin1View(name);
}

} // namespace oldfiles
