#include "data/settings/SortOrder.h"

#include "data/settings/RegistryFunctions.h"
#include "data/settings/SettingsKeys.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

static QVariant setting(const QString &valueName)
{
    return ReadRegistryValue(platform::HKEY_CURRENT_USER, sortingKey(), valueName);
}

SortOrder sortOrderOf(const QVariant &stored)
{
    static const QRegularExpression decimal(u"\\A *[+-]?[0-9]+(\\.[0-9]+)? *\\z"_s);
    const QString text = stored.toString();
    const bool byName = decimal.match(text).hasMatch() && text.toDouble() != 0;
    return byName ? SortOrder::Name : SortOrder::CategoryThenName;
}

SortOrder recipeSortOrder()
{
    return sortOrderOf(setting(u"Recipes"_s));
}

SortOrder ingredientSortOrder()
{
    return sortOrderOf(setting(u"Ingredients"_s));
}

QString recipeOrderByClause()
{
    return recipeSortOrder() == SortOrder::Name ? u" RecipeName"_s : u" RecipeType, RecipeName"_s;
}

QString ingredientOrderByClause()
{
    return ingredientSortOrder() == SortOrder::Name ? u" IngredientName"_s
                                                    : u" IngredientType, IngredientName"_s;
}
