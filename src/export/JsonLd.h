#pragma once

#include "export/RecipeDetails.h"

#include <string>

// The recipe as schema.org/Recipe in JSON-LD, for other recipe programs to take over. UTF-8 that
// may stand in a script element as it is.
std::string jsonLd(const RecipeDetails &details);
