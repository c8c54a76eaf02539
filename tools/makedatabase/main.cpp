// Makes a database without recipes and fills its two catalogs from text files:
//   makedatabase FILE INGREDIENTS UTENSILS
// If FILE exists, it is kept.

#include "CatalogTable.h"
#include "data/Database.h"
#include "data/DatabaseError.h"
#include "data/RecordCursor.h"
#include "data/Schema.h"
#include "data/TypesAndRatings.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace {

int ingredientType(const QString &name)
{
    const QStringList types = ingredientTypes();
    const qsizetype type = types.indexOf(name);
    if (type < 0)
        throw DatabaseError(u"the type must be one of "_s + types.join(u", "_s));
    return static_cast<int>(type);
}

QString shelfLife(const QString &days)
{
    const bool isNumber =
        std::all_of(days.begin(), days.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    if (days.isEmpty() || days.size() > 3 || !isNumber)
        throw DatabaseError(u"the shelf life must be a number of days from 0 to 999"_s);
    return days;
}

void addIngredients(std::shared_ptr<Database> database, const QString &table)
{
    const QString source = u"Ingredients"_s;
    RecordCursor ingredients(std::move(database), source);
    readCatalogTable(table, 4, [&ingredients](const QStringList &fields) {
        ingredients.AddNew();
        ingredients.setValue("IngredientName"_L1, fields[0]);
        ingredients.setValue("IngredientType"_L1, ingredientType(fields[1]));
        ingredients.setValue("ShelfLife"_L1, shelfLife(fields[2]));
        ingredients.setValue("Vegetarian"_L1, fields[3]);
        ingredients.Update();
    });
}

void addUtensils(std::shared_ptr<Database> database, const QString &table)
{
    const QString source = u"Utensils"_s;
    RecordCursor utensils(std::move(database), source);
    readCatalogTable(table, 1, [&utensils](const QStringList &fields) {
        utensils.AddNew();
        utensils.setValue("UtensilName"_L1, fields[0]);
        utensils.Update();
    });
}

void make(const QString &path, const QString &ingredientTable, const QString &utensilTable)
{
    SQLite::Database(path.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec(creationScript());
    const std::shared_ptr<Database> database = Database::open(path);
    Transaction transaction(*database);
    addIngredients(database, ingredientTable);
    addUtensils(database, utensilTable);
    transaction.commit();
}

// Makes the database in a temporary folder and then links it to its place, so that an interrupted
// build leaves no incomplete file. Unlike a rename, a hard link does not replace a file that
// another build has put there in the meantime.
void makeInPlace(const std::filesystem::path &file, char *tables[])
{
    const QTemporaryDir folder(QFile::decodeName((file.string() + "-XXXXXX").c_str()));
    if (!folder.isValid())
        throw std::runtime_error(folder.errorString().toStdString());
    const QString made = folder.filePath(u"data.rbk"_s);
    make(made, QFile::decodeName(tables[0]), QFile::decodeName(tables[1]));

    const std::filesystem::path complete = QFile::encodeName(made).toStdString();
    std::error_code failure;
    std::filesystem::create_hard_link(complete, file, failure);
    if (failure && !std::filesystem::exists(file)) // some file systems have no hard links
        std::filesystem::rename(complete, file);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 4) {
        std::fputs("usage: makedatabase FILE INGREDIENTS UTENSILS\n", stderr);
        return 2;
    }
    const std::filesystem::path file = argv[1];
    if (std::filesystem::exists(std::filesystem::symlink_status(file)))
        return 0;
    try {
        makeInPlace(file, argv + 2);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "makedatabase: %s: %s\n", file.string().c_str(), error.what());
        return 1;
    }
    return 0;
}
