#pragma once

#include <QByteArray>
#include <QString>

#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The contents of a recipe file. Every text is UTF-8 and as it is in the file, neither trimmed nor
// converted. The views are parts of SrfRecipe::text.

struct SrfIngredient {
    std::string_view name; // never empty, contains no null character
    std::string_view quantity;
    std::string_view entry; // the whole line
    int line; // counted from 1
};

// The fields that are needed only if the catalog does not have the ingredient. None is empty.
struct SrfNewIngredient {
    std::string_view type;
    std::string_view shelfLife;
    std::string_view vegetarian;
};

struct SrfUtensil {
    std::string_view name; // never empty, contains no null character
    int line; // counted from 1
};

struct SrfRecipe {
    // The same lines in every file.
    static constexpr int typeLine = 4;
    static constexpr int servesLine = 5;

    QByteArray text; // of the whole file
    std::string_view name; // never empty, contains no null character
    std::string_view author;
    std::string_view type;
    std::string_view serves;
    std::string_view description;
    std::string instructions; // every line ends in CR LF
    std::vector<SrfIngredient> ingredients;
    std::vector<SrfUtensil> utensils;
};

// Why a recipe file is not imported.
struct SrfError {
    enum class Kind {
        UnexpectedLine, // the line is not what was expected
        EndOfFile, // the file ends before the line; found is empty
        LineFeeds, // most lines end in LF alone; expected and found are empty
    };

    int line; // counted from 1
    QString expected; // for the user, follows "expected "
    QString found; // the text in the file, of any length
    Kind kind = Kind::UnexpectedLine;
};

// Returns the error as plain text for the user: the file, the line, what was expected and what was
// found, shortened if it is long and with its control characters made visible.
QString srfErrorText(const SrfError &error, const QString &path);

// Parses the text of a recipe file, which is UTF-8, and returns the recipe or the first error. What
// depends on the database is not checked: whether the numbers are numbers, and the fields between
// an ingredient's name and its quantity, which only a new ingredient needs.
std::variant<SrfRecipe, SrfError> parseSrf(const QByteArray &text);

// Returns the fields of an ingredient that the catalog does not have yet, or an error if one of
// them is missing or empty.
std::variant<SrfNewIngredient, SrfError> newIngredient(const SrfIngredient &ingredient);
