#pragma once

#include "export/SiteMap.h"

#include <memory>
#include <span>

class Database;

struct IngredientDetails {
    const ListEntry *entry;
    std::string quantity; // may be empty
};

// What the page of a recipe shows besides its entry in the site map, as clean text in UTF-8
// (PageText.h). Texts are empty if nothing is stored.
struct RecipeDetails {
    std::string author;
    std::string servings;
    int rating = 0; // position in recipeRatings(), 0 if it is not shown
    std::vector<std::string> description; // paragraphs
    std::vector<IngredientDetails> ingredients; // in their stored order
    std::vector<const ListEntry *> utensils;
    std::vector<std::string> instructions; // paragraphs
};

// Reads the contents of the pages from the database. The database is locked only during each call,
// but all calls return the same state of it: if another program has changed it since entries(), the
// next call throws ExportError. All throw DatabaseError.
class RecipeReader
{
public:
    explicit RecipeReader(const QString &databasePath);

    // Returns all recipes, and the ingredients and utensils that they use. To be called once,
    // before details().
    SiteContents entries();

    // Returns the details of the recipes with these keys, in the same order. The keys must be
    // consecutive keys of entries() in ascending order, and at least one. The site map is made of
    // entries(); the details refer to its ingredients and utensils.
    std::vector<RecipeDetails> details(const SiteMap &site, std::span<const qint64> keys);

private:
    std::shared_ptr<Database> m_database;
    int m_version = 0; // of the data when entries() was called
};
