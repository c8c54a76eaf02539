#pragma once

#include "GeneratedRecipe.h"
#include "PlainSqlite.h"

#include <SQLiteCpp/Database.h>

// Writes generated recipes into a new database with prepared INSERT statements alone. SQLite
// assigns the keys.
class RecipeInserter
{
public:
    // Creates the file with the program's tables. Throws if it exists.
    explicit RecipeInserter(const std::string &path);

    void begin() { m_database.exec("BEGIN IMMEDIATE"); }
    void commit() { m_database.exec("COMMIT"); }

    // Both insert a generated catalog entry and return its key.
    qint64 addIngredient(int number);
    qint64 addUtensil(int number);

    // Inserts the recipe and its links to the catalogs. The vectors hold the keys of the catalog
    // entries by their numbers.
    void addRecipe(const GeneratedRecipe &recipe, const std::vector<qint64> &ingredientKeys,
                   const std::vector<qint64> &utensilKeys);

private:
    qint64 lastKey() const { return m_database.getLastInsertRowid(); }

    SQLite::Database m_database;
    PlainStatement m_recipe;
    PlainStatement m_ingredient;
    PlainStatement m_utensil;
    PlainStatement m_recipeIngredient;
    PlainStatement m_recipeUtensil;
};

// Creates a database with complete catalogs and that many recipes, stored in the order of their
// keys.
void generateDatabase(const std::string &path, int recipes);

// Creates a database without any rows.
void generateEmptyDatabase(const std::string &path);
