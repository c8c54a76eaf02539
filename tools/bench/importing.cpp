#include "Bench.h"
#include "RecipeFiles.h"
#include "data/DatabasePath.h"
#include "import/frmImportRecipe.h"
#include "interaction/TerminalInteraction.h"

#include <QFile>

#include <algorithm>
#include <span>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

// The importer and the database into which it imports.
class Importer
{
public:
    explicit Importer(const QString &database)
        : m_importer(m_interaction)
    {
        DatabasePath = database;
        m_importer.Form_Load();
        m_importer.openDataSources();
    }

    // Imports the files in one batch and returns the seconds it takes.
    double import(std::span<const RecipeFile> files)
    {
        return secondsOf([&] {
            m_importer.batch([&] {
                for (const RecipeFile &file : files) {
                    if (m_importer.ImportSRFFile(file.path) != frmImportRecipe::Outcome::Imported)
                        throw std::runtime_error("a file was not imported");
                }
            });
        });
    }

private:
    TerminalInteraction m_interaction;
    frmImportRecipe m_importer;
};

void measureBatch(Bench &bench, std::span<const RecipeFile> files)
{
    printResult({"import " + formatNumber(std::ssize(files))
                     + " files in one batch into an empty database (baseline: insert the same rows "
                       "in one transaction)",
                 0,
                 Unit::Seconds,
                 compare([&] { return insertPlainly(bench, files); },
                         [&] { return Importer(emptyDatabase(bench)).import(files); }),
                 {Limit::Kind::Ratio, 1.6}});
}

// Both importers first import a file that is not counted, because it makes them read their tables.
void measureLargeDatabase(Bench &bench, std::span<const RecipeFile> files)
{
    const QString copy = bench.path(u"large.rbk"_s);
    if (!QFile::copy(bench.database(bench.largest()), copy))
        throw std::runtime_error("the database cannot be copied");
    Importer intoLarge(copy);
    intoLarge.import(files.first(1));
    std::span<const RecipeFile> rest = files.subspan(1);
    const std::size_t share = rest.size() / 8;
    std::span<const RecipeFile> current;

    printResult({"import a file of a batch, after the first one (baseline: into an empty database)",
                 bench.largest(),
                 Unit::Seconds,
                 compare(
                     [&] {
                         current = rest.first(share);
                         rest = rest.subspan(share);
                         Importer intoEmpty(emptyDatabase(bench));
                         intoEmpty.import(files.first(1));
                         return intoEmpty.import(current) / static_cast<double>(share);
                     },
                     [&] { return intoLarge.import(current) / static_cast<double>(share); }),
                 {Limit::Kind::Ratio, 1.5}});
}

} // namespace

void measureImporting(Bench &bench)
{
    const std::vector<RecipeFile> files =
        writeFiles(bench, u"files"_s, 0, std::min(10'000, bench.largest()));
    measureBatch(bench, files);
    measureLargeDatabase(bench, files);
}
