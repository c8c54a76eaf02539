#pragma once

#include <QStringList>

// The texts for the numbers that are stored as types and ratings. Each number is an index into its
// list.
QStringList recipeTypes();
QStringList recipeRatings();
QStringList ingredientTypes();

// The numbers that a new recipe gets, and that a stored null is shown as.
inline constexpr int defaultRecipeType = 0;
inline constexpr int defaultRating = 5;
