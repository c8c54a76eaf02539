// Imports the recipe files of a folder as the Import window does, and prints the longest time, in
// seconds, that a file took:
//   importer DATABASE FOLDER
// Several processes may import into the same database at the same time. A message box is a failure.

#include "FailingInteraction.h"
#include "data/DatabasePath.h"
#include "import/frmImportRecipe.h"

#include <QFile>

#include <chrono>
#include <cstdio>

namespace {

using Seconds = std::chrono::duration<double>;

Seconds longestFile(frmImportRecipe &importer, const std::filesystem::path &folder)
{
    Seconds longest{};
    importer.batch([&] {
        for (const auto &file : std::filesystem::directory_iterator(folder)) {
            const auto start = std::chrono::steady_clock::now();
            importer.ImportSRFFile(file.path());
            longest = std::max<Seconds>(longest, std::chrono::steady_clock::now() - start);
        }
    });
    return longest;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    DatabasePath = QFile::decodeName(argv[1]);
    try {
        FailingInteraction interaction;
        frmImportRecipe importer(interaction);
        importer.Form_Load();
        importer.openDataSources();
        std::printf("%.6f\n", longestFile(importer, argv[2]).count());
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "importer: %s\n", failure.what());
        return 1;
    }
    return 0;
}
