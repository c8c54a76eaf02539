#pragma once

#include "export/SiteMap.h"

#include <QList>

#include <memory>
#include <span>

class Database;

struct IngredientDetails {
    qint64 key = 0;
    std::string name;
    int type = 0; // position in ingredientTypes()
    std::string quantity; // may be empty
};

struct UtensilDetails {
    qint64 key = 0;
    std::string name;
};

// What the page of a recipe shows, as clean text in UTF-8 (PageText.h). Texts are empty if nothing
// is stored.
struct RecipeDetails {
    std::string author;
    std::string servings;
    int rating = 0; // position in recipeRatings(), 0 if it is not shown
    bool vegetarian = true; // whether all ingredients are; also if there are none
    std::vector<std::string> description; // paragraphs
    std::vector<IngredientDetails> ingredients; // in their stored order
    std::vector<UtensilDetails> utensils;
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
    // consecutive keys of entries() in ascending order, and at least one.
    std::vector<RecipeDetails> details(std::span<const qint64> keys);

private:
    std::shared_ptr<Database> m_database;
    int m_version = 0; // of the data when entries() was called
};
