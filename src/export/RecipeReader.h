#pragma once

#include "export/SiteMap.h"

#include <QList>

#include <memory>
#include <span>

class Database;

struct IngredientDetails {
    QString quantity; // may be empty
    QString name;
};

// What the page of a recipe shows, as clean text (PageText.h). Texts are empty if nothing is
// stored.
struct RecipeDetails {
    QString title;
    QString type; // its name
    QString author;
    QString servings;
    int rating = 0; // position in recipeRatings(), 0 if not rated
    QString ratingText;
    bool vegetarian = true; // whether all ingredients are; also if there are none
    QStringList description; // paragraphs
    QList<IngredientDetails> ingredients; // in their stored order
    QStringList utensils;
    QStringList instructions; // paragraphs
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
