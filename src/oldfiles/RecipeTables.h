#pragma once

#include <QString>

#include <span>
#include <string_view>

namespace oldfiles {

// What a column must hold so that it can be read.
enum class ValueKind {
    Number, // any numeric type, money and decimal too, but neither a date nor yes/no
    YesNo, // yes/no or a whole number
    Text, // text or memo
};

struct Column {
    std::string_view name; // in any case; ASCII
    ValueKind kind;
};

struct TableLayout {
    std::string_view name; // in any case; ASCII
    std::span<const Column> columns;
};

// The five tables of a recipe file with the columns that are read: Recipes, Ingredients, Utensils,
// RecipeIngredients, RecipeUtensils. The column of a table's key is its first.
std::span<const TableLayout> recipeTables();

// Whether a name of the file is this name of a layout.
bool isSameName(const QString &stored, std::string_view name);

// The name of a layout as text.
QString toText(std::string_view name);

} // namespace oldfiles
