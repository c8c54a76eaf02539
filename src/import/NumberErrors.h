#pragma once

#include "import/srf/SrfParser.h"

#include <optional>

// The texts of a recipe file that are not the numbers that the columns of the database accept.

std::optional<SrfError> headingError(const SrfRecipe &recipe);

// The error in the fields that are stored if the catalog does not have the ingredient.
std::optional<SrfError> newIngredientError(const SrfIngredient &ingredient);
