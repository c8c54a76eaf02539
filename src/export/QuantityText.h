#pragma once

#include <string>
#include <string_view>

// The quantity of an ingredient, divided as a cookbook shows it: before and after the name of the
// ingredient.
struct SplitQuantity {
    std::string amount; // "8 cloves"
    std::string preparation; // with its comma or parenthesis: ", minced" or " (soft)"
};

// Divides a quantity in UTF-8: "8 cloves, minced", "3 tbsp (soft)", "1/4 cup chopped". If it cannot
// be divided, all of it is the amount. Either part may be empty.
SplitQuantity splitQuantity(std::string_view quantity);

// Returns the line of a cookbook: "8 cloves garlic, minced".
std::string ingredientLine(const SplitQuantity &quantity, std::string_view name);
