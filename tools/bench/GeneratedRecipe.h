#pragma once

#include <string>
#include <vector>

// Generated recipes, ingredients and utensils. They are the same in every run.

struct GeneratedLine {
    int ingredient; // number of the catalog entry, from 0
    std::string quantity;
};

struct GeneratedRecipe {
    std::string name; // unique
    std::string description;
    std::string author;
    int type;
    std::string instructions; // 1 to 2 kB
    int rating;
    int serves;
    std::vector<GeneratedLine> ingredients; // 10 lines
    std::vector<int> utensils; // 3 numbers of catalog entries
};

struct GeneratedIngredient {
    std::string name;
    int type;
    int shelfLife;
    bool vegetarian;
};

// Numbers of entries in the catalogs.
struct CatalogSizes {
    int ingredients; // up to 10,000
    int utensils; // up to 1,000
};

// Returns the sizes of the catalogs in a database with that many recipes.
CatalogSizes catalogSizes(int recipes);

// A recipe's `number` is at least 0 and less than generatedRecipes.
inline constexpr int generatedRecipes = 1'280'000;
std::string generatedRecipeName(int number);
GeneratedRecipe generatedRecipe(int number, CatalogSizes catalogs);

GeneratedIngredient generatedIngredient(int number);
std::string generatedUtensilName(int number);

// Returns the text of a recipe file with this recipe.
std::string srfText(const GeneratedRecipe &recipe);
