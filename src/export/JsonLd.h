#pragma once

#include "export/RecipeReader.h"

#include <string>

// Returns the recipe as a schema.org/Recipe in JSON-LD, which other recipe programs can import. It
// is UTF-8 that can be put into a script element without escaping.
std::string jsonLd(const RecipeDetails &details);
