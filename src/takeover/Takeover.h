#pragma once

#include "interaction/Progress.h"
#include "takeover/TakeoverReport.h"

#include <QString>

#include <memory>
#include <optional>

namespace oldfiles {
class RecipeFile;
}
struct CopiedTables;
class TakeoverNotes;

// Makes a recipe database from a file of the Access format, which is only read.
class Takeover
{
public:
    // Opens the file and checks its tables and columns. Throws platform::UserVisibleError if it
    // cannot be taken over, with a text that names what is missing, unsuitable or damaged.
    explicit Takeover(const QString &oldFile);
    ~Takeover();

    // The number of recipes for the question: as many as the file has or as it states, whichever
    // are more. Counts the first pages of an extremely large file only.
    qint64 recipeCount() const;

    // Writes a recipe database to `newFile`, which must not exist, checks it and waits until the
    // disk has it. What is damaged is left out: look at the report before using the file. Returns
    // nothing if the user cancelled, and throws platform::UserVisibleError if anything fails;
    // nothing is left at `newFile` then.
    std::optional<TakeoverReport> writeTo(const QString &newFile, Progress &progress);

private:
    Q_DISABLE_COPY_MOVE(Takeover)

    class Steps;

    bool fill(const QString &newFile, CopiedTables &copied, TakeoverNotes &notes, Steps &steps);
    bool check(const QString &newFile, CopiedTables &copied, TakeoverNotes &notes, Steps &steps);

    std::unique_ptr<oldfiles::RecipeFile> m_file;
};
