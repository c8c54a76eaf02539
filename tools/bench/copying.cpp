#include "Bench.h"
#include "PlainSqlite.h"
#include "data/Database.h"

#include <QDir>
#include <QFile>

#include <filesystem>
#include <stdexcept>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QString emptyFolder(const Bench &bench)
{
    QString folder = bench.path(u"copies"_s);
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    return folder;
}

void copyAndSync(const QString &from, const QString &to)
{
    std::filesystem::copy_file(from.toStdString(), to.toStdString());
    QFile copy(to);
    if (!copy.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) || fsync(copy.handle()) != 0)
        throw std::runtime_error("the copy cannot be written");
}

Cost checkAndCopyPlainly(const Bench &bench, const QString &path)
{
    const QString folder = emptyFolder(bench);
    SQLite::Database database = plainConnection(path.toStdString());
    database.execAndGet("PRAGMA schema_version");
    return secondsOf([&] {
        database.exec("BEGIN IMMEDIATE");
        PlainStatement(database.getHandle(), "PRAGMA quick_check").run();
        copyAndSync(path, folder + u"/plain.rbk"_s);
        database.exec("ROLLBACK");
    });
}

Cost beginFirstWrite(const Bench &bench, const QString &path)
{
    emptyFolder(bench);
    const auto database = Database::open(path);
    return secondsOf([&] { const Transaction transaction(*database); });
}

} // namespace

void measureCopying(Bench &bench)
{
    for (const int recipes : {200, bench.largest()}) {
        const QString path = bench.database(recipes);
        bench.report({"begin the first write of a day (baseline: quick_check, copy_file and fsync)",
                      recipes,
                      Unit::Seconds,
                      compare([&] { return checkAndCopyPlainly(bench, path); },
                              [&] { return beginFirstWrite(bench, path); }),
                      {Limit::Kind::Ratio, 1.5}});
    }
}
