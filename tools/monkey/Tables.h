#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <vector>

namespace SQLite {
class Database;
}

using Key = qint64;

struct Recipe {
    QString name;
    QString description;
    QString author;
    int type = 0;
    QString instructions;
    int rating = 0;
    QString serves;
};

struct Ingredient {
    QString name;
    int type = 0;
    QString shelfLife;
    bool vegetarian = false;
};

struct Utensil {
    QString name;
};

struct Link {
    Key key = 0; // of the ingredient or utensil
    QString quantity; // empty for a utensil
};

// The five tables of a recipe database as plain values. A number that the user types is kept as
// text.
struct Tables {
    std::map<Key, Recipe> recipes;
    std::map<Key, Ingredient> ingredients;
    std::map<Key, Utensil> utensils;
    std::map<Key, std::vector<Link>> ingredientLinks; // by recipe, in the order of the rows
    std::map<Key, std::vector<Link>> utensilLinks;
};

Tables readTables(SQLite::Database &database);

// Returns the rows of the one that are not in the other, a line for each; empty if they are equal.
QString difference(const Tables &expected, const Tables &stored);

// Returns a line for each name that two rows of a table have. Case does not count.
QString doubledNames(const Tables &tables);

// Returns the form in which a typed number is compared: "12" for "012", "0" for an empty text.
QString numberText(const QString &typed);

inline bool isSameText(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// Returns the key of the row with this name, or `none`.
template <class Row>
Key findName(const std::map<Key, Row> &rows, const QString &name, Key none)
{
    for (const auto &[key, row] : rows) {
        if (isSameText(row.name, name))
            return key;
    }
    return none;
}
