#pragma once

#include "import/srf/SrfParser.h"

#include <optional>
#include <vector>

// The texts of a recipe file that are not the numbers that the columns of the database accept.
struct NumberErrors {
    // The fields of an ingredient are stored only if the catalog does not have it, and of several
    // entries with one name only those of the first one.
    struct Ingredient {
        QString name;
        SrfError error;
    };

    std::optional<SrfError> heading;
    std::vector<Ingredient> ingredients; // in the order of the file
};

// Does not need the database.
NumberErrors findNumberErrors(const SrfRecipe &recipe);
