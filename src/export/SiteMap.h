#pragma once

#include <QStringList>

#include <cstdint>
#include <string>
#include <vector>

// All texts are UTF-8.

// A recipe, as other pages link to it.
struct RecipeEntry {
    qint64 key = 0;
    std::string title;
    int type = 0; // position in recipeTypes()
    bool vegetarian = true; // whether all ingredients are; also if there are none
    std::string page = {}; // file name
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
};

// What is to be shown, without page names and with texts as they are stored.
struct SiteContents {
    std::vector<RecipeEntry> recipes; // in the sort order of the settings
    std::vector<ListEntry> ingredients; // those that recipes use, sorted by key
    std::vector<ListEntry> utensils;
};

// All pages and their links.
struct SiteMap {
    static constexpr QLatin1StringView mainMenuPage{"index.html"};
    static constexpr QLatin1StringView styleSheet{"style.css"};
    static constexpr QLatin1StringView script{"script.js"};

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

// The names of all files of the site.
QStringList fileNames(const SiteMap &site);
