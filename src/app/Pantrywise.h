#pragma once

#include <filesystem>

class Interaction;

// The start-up routine: says where the recipe file is, registers the recipe files' type and loads
// the main window. With the path of a recipe file that one is imported and the program is over;
// with an empty path the main window is shown until it ends the program. Returns the exit status:
// after an import 0 where the recipe was imported, else 1.
int startUp(Interaction &interaction, const std::filesystem::path &importPath);
