#include "RecipeFiles.h"
#include "Subjects.h"
#include "data/DatabasePath.h"
#include "import/frmImportRecipe.h"
#include "interaction/TerminalInteraction.h"

#include <QFile>

#include <algorithm>
#include <span>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

// The hidden importer on a recipe file of its own.
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

    // Seconds for the whole batch.
    double import(std::span<const RecipeFile> files)
    {
        return secondsOf([&] {
            m_importer.batch([&] {
                for (const RecipeFile &file : files) {
                    if (m_importer.ImportSRFFile(file.path) != frmImportRecipe::Outcome::Imported)
                        throw std::runtime_error("a file has not been imported");
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
    printResult({grouped(std::ssize(files))
                     + " files in one batch into an empty database; plain is inserts of the same "
                       "rows in one transaction",
                 0,
                 Unit::Seconds,
                 inTurns([&] { return insertPlainly(bench, files); },
                         [&] { return Importer(emptyDatabase(bench)).import(files); }),
                 {Bound::Kind::TimesYardstick, 1.6}});
}

// Both have read their tables with a first file, whose time does not count.
void measureLargeDatabase(Bench &bench, std::span<const RecipeFile> files)
{
    const QString copy = bench.path(u"large.rbk"_s);
    if (!QFile::copy(bench.database(bench.largest()), copy))
        throw std::runtime_error("the database could not be copied");
    Importer intoLarge(copy);
    intoLarge.import(files.first(1));
    std::span<const RecipeFile> rest = files.subspan(1);
    const std::size_t share = rest.size() / 8;
    std::span<const RecipeFile> current;

    printResult({"a file of a batch, after the first; plain is one into an empty database",
                 bench.largest(),
                 Unit::Seconds,
                 inTurns(
                     [&] {
                         current = rest.first(share);
                         rest = rest.subspan(share);
                         Importer intoEmpty(emptyDatabase(bench));
                         intoEmpty.import(files.first(1));
                         return intoEmpty.import(current) / static_cast<double>(share);
                     },
                     [&] { return intoLarge.import(current) / static_cast<double>(share); }),
                 {Bound::Kind::TimesYardstick, 1.5}});
}

} // namespace

void measureImporting(Bench &bench)
{
    const std::vector<RecipeFile> files =
        writeFiles(bench, u"files"_s, 0, std::min(10'000, bench.largest()));
    measureBatch(bench, files);
    measureLargeDatabase(bench, files);
}
