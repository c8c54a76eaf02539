#include "WritableDatabase.h"

#include "data/Database.h"
#include "platform/DiskSync.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

// Each copy has its own folder, because the program's copy of the day is made beside it. It is
// synced, so that the first commits do not wait for it.
QString writableDatabase(Bench &bench, int recipes, Writer writer)
{
    const QString folder =
        bench.path((writer == Writer::Program ? u"program %1"_s : u"plain %1"_s).arg(recipes));
    QString path = folder + u"/data.rbk"_s;
    if (QFile::exists(path))
        return path;
    if (!QDir().mkpath(folder) || !QFile::copy(bench.database(recipes), path)
        || platform::syncFileSystem(platform::nativePath(folder)))
        throw std::runtime_error("the database cannot be copied");
    return path;
}

std::shared_ptr<Database> openForWrites(const QString &path)
{
    std::shared_ptr<Database> database = Database::open(path);
    const Transaction firstWrite(*database);
    return database;
}
