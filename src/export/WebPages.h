#pragma once

#include "data/settings/Settings.h"

#include <optional>

class Progress;

struct ExportedPages {
    qsizetype recipes; // number of them
    QString mainMenu; // full path of its page, the one to open first
};

// Writes the pages of all recipes in the database to the folder "Pantrywise" in the chosen folder.
// Returns nothing if the user stops it. Then, and if it throws ExportError or DatabaseError,
// earlier pages stay as they are. Titles are kept in memory, the other contents of the pages are
// not.
std::optional<ExportedPages> exportPages(const QString &databasePath, const QString &chosenFolder,
                                         const PageSettings &settings, Progress &progress);
