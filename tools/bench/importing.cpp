#include "DatabasePath.h"
#include "Paths.h"
#include "PlainWriter.h"
#include "Subjects.h"
#include "TerminalDoorway.h"
#include "frmImportRecipe.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <span>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

// A recipe file and what it holds, known without reading it.
struct RecipeFile {
    QString path;
    GeneratedRecipe recipe;
};

// Recipes that no generated database has, with few enough ingredients that all are soon known.
std::vector<RecipeFile> writeFiles(const QString &folder, int count)
{
    constexpr int firstRecipe = 100'000;
    QDir().mkpath(folder);
    std::vector<RecipeFile> files;
    for (int i = 0; i < count; ++i) {
        GeneratedRecipe recipe = generatedRecipe(firstRecipe + i, catalogSizes(0));
        QString path = folder + u"/%1.srf"_s.arg(i);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)
            || file.write(QByteArray::fromStdString(srfText(recipe))) < 0)
            throw std::runtime_error(file.errorString().toStdString());
        files.push_back({std::move(path), std::move(recipe)});
    }
    return files;
}

QString emptyDatabase(Bench &bench)
{
    QString path = bench.path(u"empty.rbk"_s);
    QFile::remove(path);
    generateEmptyDatabase(path.toStdString());
    return path;
}

// The key of a catalog's row, which is added when it is first met.
template <typename Add>
void meet(std::vector<qint64> &keys, int number, Add add)
{
    qint64 &key = keys[static_cast<std::size_t>(number)];
    if (key == 0)
        key = add(number);
}

double insertPlainly(Bench &bench, std::span<const RecipeFile> files)
{
    const QString path = bench.path(u"plain.rbk"_s);
    QFile::remove(path);
    PlainWriter writer(path.toStdString());
    const CatalogSizes catalogs = catalogSizes(0);
    std::vector<qint64> ingredients(static_cast<std::size_t>(catalogs.ingredients));
    std::vector<qint64> utensils(static_cast<std::size_t>(catalogs.utensils));
    return secondsOf([&] {
        writer.begin();
        for (const RecipeFile &file : files) {
            for (const GeneratedLine &line : file.recipe.ingredients)
                meet(ingredients, line.ingredient, [&](int n) { return writer.addIngredient(n); });
            for (const int utensil : file.recipe.utensils)
                meet(utensils, utensil, [&](int n) { return writer.addUtensil(n); });
            writer.addRecipe(file.recipe, ingredients, utensils);
        }
        writer.commit();
    });
}

// The hidden importer on a recipe file of its own.
class Importer
{
public:
    explicit Importer(const QString &database)
        : m_importer(m_doorway)
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
                    if (m_importer.ImportSRFFile(platform::nativePath(file.path))
                        != frmImportRecipe::Outcome::Imported)
                        throw std::runtime_error("a file has not been imported");
                }
            });
        });
    }

private:
    TerminalDoorway m_doorway;
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
        writeFiles(bench.path(u"files"_s), std::min(10'000, bench.largest()));
    measureBatch(bench, files);
    measureLargeDatabase(bench, files);
}
