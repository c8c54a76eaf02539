#pragma once

#include "GeneratedRecipe.h"
#include "PlainSqlite.h"

#include <SQLiteCpp/Database.h>

// Creates a database without any rows, with the program's tables. Throws if the file exists.
SQLite::Database createDatabase(const std::string &path);

// Writes generated recipes into a database with prepared INSERT statements alone. SQLite
// assigns the keys.
class RecipeInserter
{
public:
    explicit RecipeInserter(SQLite::Database database);

    SQLite::Database &database() { return m_database; }

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
