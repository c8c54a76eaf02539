#pragma once

#include <string>
#include <vector>

// Recipes that are made up, the same in every run.

struct GeneratedLine {
    int ingredient; // number in the catalog, from 0
    std::string quantity;
};

struct GeneratedRecipe {
    std::string name; // no two numbers share one
    std::string description;
    std::string author;
    int type;
    std::string instructions; // 1 to 2 kB
    int rating;
    int serves;
    std::vector<GeneratedLine> ingredients; // 10
    std::vector<int> utensils; // 3, numbers in the catalog
};

struct GeneratedIngredient {
    std::string name;
    int type;
    int shelfLife;
    bool vegetarian;
};

// How many entries the catalogs have.
struct CatalogSizes {
    int ingredients; // up to 10,000
    int utensils; // up to 1,000
};

// Of a database with so many recipes.
CatalogSizes catalogSizes(int recipes);

// `number` counts from 0 and stays below generatedRecipes.
inline constexpr int generatedRecipes = 160'000;
std::string generatedRecipeName(int number);
GeneratedRecipe generatedRecipe(int number, CatalogSizes catalogs);

GeneratedIngredient generatedIngredient(int number);
std::string generatedUtensilName(int number);

// The recipe as the text of a recipe file.
std::string srfText(const GeneratedRecipe &recipe);
