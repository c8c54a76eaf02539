#pragma once

#include "export/SiteMap.h"

#include <functional>
#include <span>

// The lists of the site and the pages that they are divided into.

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

struct RecipeList {
    ListKind kind = ListKind::Recipes;
    std::string name;
    std::string page; // file name of the first page
    std::vector<ListLink> trail = {}; // the lists above it, the uppermost first
    std::vector<ListLink> types = {}; // the same lines by type, if there are such lists
    std::vector<ListLine> lines = {}; // in their order
};

// The list of the main menu.
RecipeList allRecipes(const SiteMap &site);

// Calls the function with each list except allRecipes(). The list is valid until it returns.
void forEachList(const SiteMap &site, const std::function<void(const RecipeList &)> &use);

// The lists that the main menu leads to beside the types: those that have lines.
std::vector<ListLink> menuLists(const SiteMap &site);

// Neighbouring lines under one heading.
struct LetterLines {
    // All Chinese characters together have one heading if the list would have many for them.
    static constexpr char32_t chinese = 0x110000;

    std::string heading() const; // "A"; "#" for lines without a letter
    std::string id() const; // "a": for anchors and file names, the same in every list

    char32_t letter; // 0 for lines without one
    std::span<const ListLine> lines;
};

std::vector<LetterLines> linesByLetter(std::span<const ListLine> lines);

// A page of a list.
struct ListPart {
    std::string page; // file name
    std::span<const ListLine> lines;
    std::size_t letter = 0; // number of its letter in DividedList::letters
    std::string start = {}; // with what its first line begins, if its letter has several pages
};

// A list of more than some hundred lines has a page for each letter, and several for a letter with
// as many lines. The first page of the list then leads to these pages and has no lines.
struct DividedList {
    std::vector<LetterLines> letters;
    std::vector<ListPart> parts; // in the order of their lines; none if the list has one page
};

// The list must be valid as long as the result. A list that must not be divided has one page.
DividedList divide(const RecipeList &list, bool mayBeDivided);
