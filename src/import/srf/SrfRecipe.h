#pragma once

#include <QString>

#include <vector>

// One recipe file as it was read: every text as it stands in the file, nothing trimmed or
// converted.

struct SrfIngredient {
    QString name; // never empty, no zero character
    QString quantity;
    QString entry; // the whole line
    int line; // counted from 1
};

// What only an ingredient that is new to the catalog takes from its entry; none is empty.
struct SrfNewIngredient {
    QString type;
    QString shelfLife;
    QString vegetarian;
};

struct SrfUtensil {
    QString name; // never empty, no zero character
    int line;
};

struct SrfRecipe {
    // Where type and serves stand in every file.
    static constexpr int typeLine = 4;
    static constexpr int servesLine = 5;

    QString name; // never empty, no zero character
    QString author;
    QString type;
    QString serves;
    QString description;
    QString instructions; // every line ends in CR LF
    std::vector<SrfIngredient> ingredients;
    std::vector<SrfUtensil> utensils;
};
