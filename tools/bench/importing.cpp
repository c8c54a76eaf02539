#include "Bench.h"
#include "RecipeFiles.h"
#include "RecipeInserter.h"
#include "WritableDatabase.h"
#include "data/DatabasePath.h"
#include "import/frmImportRecipe.h"
#include "interaction/TerminalInteraction.h"

#include <algorithm>
#include <numeric>
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

    // Imports the files in one batch.
    Cost import(std::span<const RecipeFile> files)
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
    bench.report(
        {"import " + formatNumber(std::ssize(files))
             + " files in one batch into an empty database (baseline: insert the same rows "
               "in one transaction)",
         0,
         Unit::Seconds,
         compare([&] { return insertPlainly(bench, files); },
                 [&] { return Importer(emptyDatabase(bench)).import(files); }),
         {Limit::Kind::Ratio, 1.6}});
}

// Inserts the rows of recipe files with plain SQLite into a database with the generated catalogs.
class PlainImporter
{
public:
    explicit PlainImporter(const QString &database)
        : m_inserter(plainConnection(database.toStdString()))
        , m_titles(m_inserter.database().getHandle(),
                   "SELECT RecipeID FROM Recipes WHERE RecipeName = ?")
        , m_ingredientKeys(static_cast<std::size_t>(catalogSizes(0).ingredients))
        , m_utensilKeys(static_cast<std::size_t>(catalogSizes(0).utensils))
    {
        std::iota(m_ingredientKeys.begin(), m_ingredientKeys.end(), 1);
        std::iota(m_utensilKeys.begin(), m_utensilKeys.end(), 1);
    }

    Cost import(const RecipeFile &file)
    {
        return secondsOf([&] {
            m_inserter.begin();
            m_titles.bind(1, file.recipe.name);
            m_titles.run();
            m_inserter.addRecipe(file.recipe, m_ingredientKeys, m_utensilKeys);
            m_inserter.commit();
        });
    }

private:
    RecipeInserter m_inserter;
    PlainStatement m_titles;
    std::vector<qint64> m_ingredientKeys;
    std::vector<qint64> m_utensilKeys;
};

// Each file is the first one of an importer, whose cursors have read nothing yet.
void measureFirstFile(Bench &bench, std::span<const RecipeFile> files, int recipes)
{
    const QString path = writableDatabase(bench, recipes, Writer::Program);
    const auto database = openForWrites(path);
    PlainImporter plain(writableDatabase(bench, recipes, Writer::PlainSqlite));
    std::span<const RecipeFile> rest = files;
    bench.report({"import one file (baseline: search for its title and insert its rows)", recipes,
                  Unit::Seconds,
                  compare([&] { return plain.import(rest.front()); },
                          [&] {
                              const auto file = rest.first(1);
                              rest = rest.subspan(1);
                              return Importer(path).import(file);
                          }),
                  absoluteLimit(recipes, {25e-3, 120e-3, 1})});
}

// Both importers first import a file that is not counted, because it makes them read their tables.
void measureLargeDatabase(Bench &bench, std::span<const RecipeFile> files)
{
    Importer intoLarge(writableDatabase(bench, bench.largest(), Writer::Program));
    intoLarge.import(files.first(1));
    std::span<const RecipeFile> rest = files.subspan(1);
    const std::size_t share = rest.size() / 8;
    std::span<const RecipeFile> current;

    bench.report(
        {"import a file of a batch, after the first one (baseline: into an empty database)",
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
    constexpr int unused = 20'000; // no other benchmark uses this file or later ones
    const std::vector<RecipeFile> single = writeFiles(bench, u"single files"_s, unused, 8);
    for (const int size : bench.sizes())
        measureFirstFile(bench, single, size);
    measureLargeDatabase(bench, files);
}
