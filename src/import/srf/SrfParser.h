#pragma once

#include "import/srf/SrfError.h"
#include "import/srf/SrfRecipe.h"

#include <variant>

// Reads the text of a whole recipe file, or says what is wrong with it first. What depends on the
// database is not judged: whether the numbers are numbers, and the fields of an ingredient between
// its name and its quantity, which only a new ingredient needs.
std::variant<SrfRecipe, SrfError> parseSrf(const QString &text);

// The fields of an ingredient that the catalog does not have yet; a complaint where one is missing
// or empty.
std::variant<SrfNewIngredient, SrfError> newIngredient(const SrfIngredient &ingredient);
