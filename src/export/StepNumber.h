#pragma once

#include <string_view>

// Whether a paragraph of instructions in UTF-8 begins with the number of its step: "1. Boil",
// "(1) Boil", "Step 1: boil". A quantity is not a step number: "2 cups", "1.5 l".
bool beginsWithStepNumber(std::string_view paragraph);
