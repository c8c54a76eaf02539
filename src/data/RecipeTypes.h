#pragma once

#include <QStringList>

// What the numbers stand for that are stored for a recipe: each is the position in its list.
QStringList recipeTypes();
QStringList recipeRatings();

inline constexpr int defaultRecipeType = 0;
inline constexpr int defaultRating = 5;
