#include "Bench.h"
#include "export/WebPages.h"
#include "interaction/Progress.h"
#include "platform/Paths.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

struct PlainFile {
    QString name;
    qsizetype size;
};

// Creates an empty folder, which replaces that of the previous round.
QString emptyFolder(const Bench &bench)
{
    QString folder = bench.path(u"pages"_s);
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    return folder;
}

double exportAll(Bench &bench, int recipes)
{
    const QString database = bench.database(recipes);
    const QString folder = emptyFolder(bench);
    SilentProgress progress;
    return secondsOf([&] { exportPages(database, folder, {}, progress); });
}

// Returns the files that the previous export has written.
std::vector<PlainFile> writtenFiles(const Bench &bench)
{
    std::vector<PlainFile> files;
    QDirIterator entries(bench.path(u"pages/Pantrywise"_s), QDir::Files);
    while (entries.hasNext()) {
        entries.next();
        files.push_back({entries.fileName(), entries.fileInfo().size()});
    }
    return files;
}

double writePlainly(const Bench &bench, const std::vector<PlainFile> &files)
{
    const QString folder = emptyFolder(bench);
    const auto largest = std::max_element(files.begin(), files.end(),
                                          [](auto &a, auto &b) { return a.size < b.size; });
    const QByteArray bytes(largest->size, 'x');
    return secondsOf([&] {
        for (const PlainFile &file : files) {
            QFile written(platform::joinPath(folder, file.name));
            if (!written.open(QIODevice::NewOnly | QIODevice::Unbuffered)
                || written.write(bytes.constData(), file.size) != file.size)
                throw std::runtime_error("a file cannot be written");
        }
    });
}

} // namespace

void measureExporting(Bench &bench)
{
    const int recipes = std::min(10'000, bench.largest());
    exportAll(bench, recipes);
    const std::vector<PlainFile> files = writtenFiles(bench);
    printResult({"export web pages (baseline: write files with the same names and sizes)",
                 recipes,
                 Unit::Seconds,
                 compare([&] { return writePlainly(bench, files); },
                         [&] { return exportAll(bench, recipes); }),
                 {Limit::Kind::Ratio, 3}});
}
