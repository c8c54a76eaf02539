#include "RecipeFiles.h"

#include "RecipeInserter.h"
#include "platform/DiskSync.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

// Inserts the catalog entry with that number if it has no key yet.
template <typename Add>
void ensureKey(std::vector<qint64> &keys, int number, Add add)
{
    qint64 &key = keys[static_cast<std::size_t>(number)];
    if (key == 0)
        key = add(number);
}

} // namespace

std::vector<RecipeFile> writeFiles(const Bench &bench, const QString &folder, int first, int count)
{
    QDir().mkpath(bench.path(folder));
    std::vector<RecipeFile> files;
    for (int i = 0; i < count; ++i) {
        GeneratedRecipe recipe = generatedRecipe(Bench::maximumSize + first + i, catalogSizes(0));
        const QString path = bench.path(folder + u"/%1.srf"_s.arg(i));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)
            || file.write(QByteArray::fromStdString(srfText(recipe))) < 0)
            throw std::runtime_error(file.errorString().toStdString());
        files.push_back({QFile::encodeName(path).toStdString(), std::move(recipe)});
    }
    // Otherwise the commits of the first rounds would wait for these files.
    if (platform::syncFileSystem(platform::nativePath(bench.path(folder))))
        throw std::runtime_error("the files cannot be synced");
    return files;
}

QString emptyDatabase(const Bench &bench)
{
    QString path = bench.path(u"empty.rbk"_s);
    QFile::remove(path);
    createDatabase(path.toStdString());
    return path;
}

Cost insertPlainly(const Bench &bench, std::span<const RecipeFile> files)
{
    const QString path = bench.path(u"plain.rbk"_s);
    QFile::remove(path);
    RecipeInserter inserter(createDatabase(path.toStdString()));
    const CatalogSizes catalogs = catalogSizes(0);
    std::vector<qint64> ingredients(static_cast<std::size_t>(catalogs.ingredients));
    std::vector<qint64> utensils(static_cast<std::size_t>(catalogs.utensils));
    return secondsOf([&] {
        inserter.begin();
        for (const RecipeFile &file : files) {
            for (const GeneratedLine &line : file.recipe.ingredients)
                ensureKey(ingredients, line.ingredient,
                          [&](int n) { return inserter.addIngredient(n); });
            for (const int utensil : file.recipe.utensils)
                ensureKey(utensils, utensil, [&](int n) { return inserter.addUtensil(n); });
            inserter.addRecipe(file.recipe, ingredients, utensils);
        }
        inserter.commit();
    });
}
