#pragma once

#include <QVariant>

// In which order recipes and ingredients are listed. The numbers are the positions in the settings
// dialog's lists, and what the settings hold.
enum class SortOrder { CategoryThenName = 0, Name = 1 };

// What a stored value chooses: any decimal number but 0 is by name, all else by category.
SortOrder sortOrderOf(const QVariant &stored);

// The order chosen in the settings.
SortOrder recipeSortOrder();
SortOrder ingredientSortOrder();

// What follows "ORDER BY" in that order; begins with a blank.
QString recipeOrderByClause();
QString ingredientOrderByClause();
