#include "Bench.h"
#include "MemoryUse.h"
#include "export/WebPages.h"
#include "interaction/Progress.h"
#include "platform/DiskSync.h"
#include "platform/Paths.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

// Makes a new folder for each turn and removes them all when it is destroyed. If a folder were
// emptied before each turn, the file system would do a part of that work during the turn.
class Folders
{
public:
    explicit Folders(const QString &parent)
        : m_parent(platform::joinPath(parent, u"pages-XXXXXX"_s))
    {
        if (!m_parent.isValid())
            throw std::runtime_error(m_parent.errorString().toStdString());
    }

    QString makeNext()
    {
        QString folder = m_parent.filePath(QString::number(++m_made));
        if (!QDir().mkdir(folder))
            throw std::runtime_error("a folder cannot be made");
        return folder;
    }

private:
    QTemporaryDir m_parent;
    int m_made = 0;
};

struct PlainFile {
    QString name;
    qsizetype size;
};

Cost exportAll(const QString &database, const QString &folder)
{
    SilentProgress progress;
    return secondsOf([&] { exportPages(database, folder, {}, progress); });
}

// Returns the files that an export to this folder has written.
std::vector<PlainFile> writtenFiles(const QString &folder)
{
    std::vector<PlainFile> files;
    QDirIterator entries(folder, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        files.push_back({entries.fileName(), entries.fileInfo().size()});
    }
    return files;
}

Cost writePlainly(const std::vector<PlainFile> &files, const QString &folder)
{
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
        if (platform::syncFileSystem(platform::nativePath(folder)))
            throw std::runtime_error("the file system cannot be synced");
    });
}

struct Destination {
    std::string name;
    QString parent;
    double limit;
};

void measureSpeed(Bench &bench, const Destination &destination, int recipes)
{
    const QString database = bench.database(recipes);
    Folders folders(destination.parent);
    const QString first = folders.makeNext();
    exportAll(database, first);
    const std::vector<PlainFile> files = writtenFiles(first);
    const int rounds = recipes <= 10'000 ? usualRounds : 3; // a round takes ten seconds
    bench.report({"export web pages " + destination.name
                      + " (baseline: write files with the same names and sizes, and sync them)",
                  recipes,
                  Unit::Seconds,
                  compare([&] { return writePlainly(files, folders.makeNext()); },
                          [&] { return exportAll(database, folders.makeNext()); }, rounds),
                  {Limit::Kind::Ratio, destination.limit}});
}

void measurePeak(Bench &bench, const QString &parent)
{
    const int recipes = std::min(10'000, bench.largest());
    Folders folders(parent);
    bench.report(
        {"memory that exporting web pages takes at most",
         recipes,
         Unit::Bytes,
         measuredOnce(memoryUse({u"export"_s, bench.database(recipes), folders.makeNext()})),
         {Limit::Kind::Absolute, 20 * 1024.0 * 1024.0 + 1024.0 * recipes}});
}

void measureMainMenu(Bench &bench, const QString &parent)
{
    constexpr int recipes = 5'000;
    Folders folders(parent);
    SilentProgress progress;
    const auto pages = exportPages(bench.database(recipes), folders.makeNext(), {}, progress);
    bench.report({"size of the exported index.html",
                  recipes,
                  Unit::Bytes,
                  measuredOnce(static_cast<double>(QFileInfo(pages->mainMenu).size())),
                  {Limit::Kind::Absolute, 150e3}});
}

} // namespace

void measureExporting(Bench &bench)
{
    const QString inMemory = u"/dev/shm"_s;
    for (const int size : bench.sizes()) {
        if (size <= 100'000)
            measureSpeed(bench, {"to the temporary folder", bench.path({}), 2}, size);
    }
    measureSpeed(bench, {"to memory", inMemory, 4}, std::min(10'000, bench.largest()));
    measurePeak(bench, inMemory);
    measureMainMenu(bench, inMemory);
}
