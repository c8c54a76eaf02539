#pragma once

#include "data/settings/Settings.h"

#include <optional>

class Progress;

struct ExportedPages {
    qsizetype recipes; // how many
    QString mainMenu; // full path of the page to begin with
};

// Writes the pages of all recipes in the recipe file into the folder "Pantrywise" of the chosen
// one. Returns nothing where the user stopped it. Then, and where it throws ExportError or
// DatabaseError, earlier pages are as they were. What is held in memory grows with the titles, not
// with the pages.
std::optional<ExportedPages> exportPages(const QString &databasePath, const QString &chosenFolder,
                                         const PageSettings &settings, Progress &progress);
