#pragma once

#include <QtGlobal>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// All texts are UTF-8.

// A recipe, as other pages link to it.
struct RecipeEntry {
    qint64 key = 0;
    std::string title;
    int type = 0; // position in recipeTypes()
    bool vegetarian = false; // whether it has ingredients, and all of them are
    std::string page = {}; // file name
    char32_t letter = 0; // titleLetter()
};

// The number of a recipe in SiteMap::recipes.
using RecipePosition = std::uint32_t;

// A recipe type, an ingredient or a utensil that recipes have, with its page.
struct ListEntry {
    qint64 key = 0; // position in recipeTypes(), or the key in the catalog
    std::string name;
    int type = 0; // of an ingredient: position in ingredientTypes()
    std::vector<RecipePosition> recipes = {}; // each once, in the order of their titles
    std::string page = {}; // file name
    char32_t letter = 0; // titleLetter()
};

// What is to be shown, without page names and with texts as they are stored.
struct SiteContents {
    std::vector<RecipeEntry> recipes; // in the sort order of the settings
    std::vector<ListEntry> ingredients; // those that recipes use, sorted by key
    std::vector<ListEntry> utensils;
};

// All pages and their links.
struct SiteMap {
    static constexpr std::string_view mainMenuPage = "index.html";
    static constexpr std::string_view ingredientsPage = "all_ingredients.html";
    static constexpr std::string_view utensilsPage = "all_utensils.html";
    static constexpr std::string_view vegetarianPage = "all_vegetarian.html";
    static constexpr std::string_view styleSheet = "style.css";
    static constexpr std::string_view script = "script.js";
    static constexpr std::string_view searchFile = "search.js";

    const ListEntry &type(const RecipeEntry &recipe) const;

    // Returns null if no recipe uses the ingredient or utensil.
    const ListEntry *ingredient(qint64 key) const;
    const ListEntry *utensil(qint64 key) const;

    std::vector<RecipeEntry> recipes; // in the sort order of the settings
    std::vector<RecipePosition> byTitle; // all recipes in the order of their titles
    std::vector<RecipePosition> vegetarian; // in the same order
    std::vector<ListEntry> types; // those that have recipes, in the order of recipeTypes()
    std::vector<ListEntry> ingredients; // sorted by key
    std::vector<ListEntry> utensils; // sorted by key
};

// Makes the site map: names the pages, cleans the texts and sorts the lists.
SiteMap siteMapOf(SiteContents contents);
