#pragma once

#include "export/RecipeReader.h"

#include <span>
#include <string>

// What other programs read from the pages, as schema.org describes it, in JSON-LD. The results are
// UTF-8 that can be put into a script element without escaping.

// A recipe, which other recipe programs can import.
struct JsonRecipe {
    const RecipeEntry &recipe;
    const RecipeDetails &details;
    std::string_view type; // its name
    std::string_view yield; // "4 servings", may be empty
    std::string_view rating; // "2 - Well received", empty without a rating
    std::span<const std::string> ingredients; // lines
};

// Returns the recipe as a schema.org/Recipe.
std::string recipeJsonLd(const JsonRecipe &recipe);

// Returns links to the recipes as a schema.org/ItemList, which has this name.
std::string itemListJsonLd(std::string_view name, std::span<const RecipeEntry *const> recipes);
