#pragma once

#include "export/SiteMap.h"

// Returns the file that the filter of the main menu loads: a script with the names and pages of the
// ingredients and types, and of the recipes if their list is not on the main menu. It has at most
// 100 bytes for each of them; a longer title is shortened.
std::string searchFile(const SiteMap &site, bool withRecipes);
