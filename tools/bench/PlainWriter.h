#pragma once

#include "GeneratedRecipe.h"
#include "PlainStatement.h"

#include <SQLiteCpp/Database.h>

// Writes generated recipes with prepared inserts and nothing else; the engine gives out the keys.
class PlainWriter
{
public:
    // Makes the file with the program's tables. Throws where it exists.
    explicit PlainWriter(const std::string &path);

    void begin() { m_database.exec("BEGIN IMMEDIATE"); }
    void commit() { m_database.exec("COMMIT"); }

    qint64 addIngredient(int number);
    qint64 addUtensil(int number);

    // With its links to the catalogs' rows, which have these keys by number.
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

// A recipe file of that many recipes in storage order, with whole catalogs.
void generateDatabase(const std::string &path, int recipes);

// A recipe file without any row.
void generateEmptyDatabase(const std::string &path);
