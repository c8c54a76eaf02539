#pragma once

#include "export/RecipeDetails.h"
#include "export/SiteMap.h"

#include <memory>
#include <span>

class Database;

// Reads what pages say from a recipe file. The file is locked only while a call runs; all of them
// together see one state of it. Throws DatabaseError, and ExportError where another program has
// changed the file since the first call.
class RecipeReader
{
public:
    explicit RecipeReader(const QString &databasePath);

    // All recipes in the stored sort order, with their titles as they are stored and without pages.
    // To be called first and once.
    std::vector<RecipeEntry> entries();

    // One for each key, in their order; keys ascend, and no recipe between two of them is left out;
    // not empty.
    std::vector<RecipeDetails> details(std::span<const qint64> keys);

private:
    std::shared_ptr<Database> m_database;
    int m_version = 0;
};
