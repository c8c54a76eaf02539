#pragma once

#include "export/RecipeDetails.h"
#include "export/SiteMap.h"

#include <memory>
#include <span>

class Database;

// Reads the contents of the pages from a recipe file. The file is locked only while a call runs.
// All calls see the same state of it: ExportError is thrown if another program has changed the file
// since entries(). Also throws DatabaseError.
class RecipeReader
{
public:
    explicit RecipeReader(const QString &databasePath);

    // All recipes in the sort order of the settings, with their stored titles and without page
    // names. To be called once, before details().
    std::vector<RecipeEntry> entries();

    // The details for each key, in the same order. The keys must ascend, include every recipe
    // between the first and the last one, and not be empty.
    std::vector<RecipeDetails> details(std::span<const qint64> keys);

private:
    std::shared_ptr<Database> m_database;
    int m_version = 0;
};
