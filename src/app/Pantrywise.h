#pragma once

#include <filesystem>

class Interaction;

// The start-up routine: sets DatabasePath, registers the file type of recipes, offers to take over
// a file of an older version and loads the main window. If there is a path, the main window imports
// that recipe file and the program ends; otherwise the main window is shown and runs until it is
// closed. Returns the exit status of the program, which after an import is 0 if the recipe was
// imported and otherwise 1.
int startUp(Interaction &interaction, const std::filesystem::path &importPath);
