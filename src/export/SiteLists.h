#pragma once

#include "export/SiteMap.h"

#include <functional>

// The lists of recipes, ingredients and utensils that the site has.

enum class ListKind { Recipes, Ingredients, Utensils };

// Returns for example "12 recipes".
std::string countText(ListKind kind, std::size_t count);

// A line of a list: a recipe, or an ingredient or a utensil.
struct ListLine {
    std::string_view title;
    std::string_view link;
    char32_t letter = 0; // titleLetter()
    int type = 0; // of the recipe or ingredient
    const RecipeEntry *recipe = nullptr; // null if the line is not a recipe
    std::size_t recipes = 0; // number of those that use the ingredient or utensil
};

// A link to a list, with the number of its lines.
struct ListLink {
    std::string name;
    std::string page;
    ListKind kind;
    std::size_t lines;
};

// A list, which has a page, or several if it is long (DividedList.h).
struct SiteList {
    ListKind kind = ListKind::Recipes;
    std::string name;
    std::string page; // file name of the first page
    std::vector<ListLink> trail = {}; // the lists above it, the uppermost first
    std::vector<ListLink> types = {}; // the same lines by type, if there are such lists
    std::vector<ListLine> lines = {}; // in their order
};

// The list of the main menu.
SiteList allRecipes(const SiteMap &site);

// Calls the function with each list except allRecipes() until it returns false. The list is valid
// until the function returns. Returns false if the function did.
bool forEachList(const SiteMap &site, const std::function<bool(const SiteList &)> &use);

// The lists that the main menu leads to beside the types: those that have lines.
std::vector<ListLink> menuLists(const SiteMap &site);
