// Prints how many bytes of memory this process uses for something:
//   memoryuse plain DATABASE TABLE     growth of the resident memory: step through the table's rows
//   memoryuse cursor DATABASE TABLE    the same: read them with a cursor, which keeps them
//   memoryuse index DATABASE           the same without code: build the index of the find bar
//   memoryuse frame DATABASE           resident memory: the main window
//   memoryuse recipe DATABASE          the same: the main window with the recipe window
//   memoryuse export DATABASE FOLDER   growth of the peak: export web pages to this folder
//   memoryuse takeover OLD NEW         the same: take over a file in the Access format

#include "BenchWindow.h"
#include "PlainSqlite.h"
#include "data/DatabasePath.h"
#include "data/RecordCursor.h"
#include "export/WebPages.h"
#include "recipes/RecipeIndex.h"
#include "recipes/frmRecipe.h"
#include "search/SearchQuery.h"
#include "takeover/Takeover.h"

#include <QApplication>

#include <SQLiteCpp/Database.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

long residentBytes()
{
    long all = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

// Makes peakBytes() count from now on.
void resetPeak()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

long peakBytes()
{
    std::ifstream status("/proc/self/status");
    const std::string name = "VmHWM:";
    std::string word;
    long kibibytes = 0;
    while (status >> word && word != name) { }
    status >> kibibytes;
    return kibibytes * 1024;
}

// SQLite's page cache is filled before.
long growthByRows(bool areKept, const QString &path, const QString &table)
{
    const std::shared_ptr<Database> database = Database::open(path);
    PlainStatement statement(database->connection().getHandle(),
                             "SELECT * FROM " + table.toStdString());
    RecordCursor cursor(database, table);
    statement.run();
    const long before = residentBytes();
    if (areKept)
        cursor.RecordCount();
    else
        statement.run();
    return residentBytes() - before;
}

// Resident memory without the pages of programs and libraries.
long anonymousBytes()
{
    long all = 0;
    long resident = 0;
    long ofFiles = 0;
    std::ifstream("/proc/self/statm") >> all >> resident >> ofFiles;
    return (resident - ofFiles) * sysconf(_SC_PAGESIZE);
}

// SQLite's page cache is filled before. The growth includes memory that was needed only for
// building, as far as it has not been returned to the system.
long growthByIndex(const QString &path)
{
    const std::shared_ptr<Database> database = Database::open(path);
    for (const Table &table : schemaTables())
        PlainStatement(database->connection().getHandle(),
                       "SELECT * FROM " + std::string(table.name))
            .run();
    RecipeIndex index;
    const long before = anonymousBytes();
    if (index.matches(*database, SearchQuery(u"s")).empty())
        throw std::runtime_error("the index found no recipe");
    return anonymousBytes() - before;
}

long bytesOfWindow(bool isRecipeOpen, const QString &path)
{
    DatabasePath = path;
    BenchWindow window;
    if (isRecipeOpen)
        window.open<frmRecipe>();
    else
        QCoreApplication::processEvents();
    return residentBytes();
}

long growthByExport(const QString &path, const QString &folder)
{
    SilentProgress progress;
    resetPeak();
    const long before = residentBytes();
    if (!exportPages(path, folder, {}, progress))
        throw std::runtime_error("the export was stopped");
    return peakBytes() - before;
}

long growthByTakeover(const QString &oldFile, const QString &newFile)
{
    SilentProgress progress;
    resetPeak();
    const long before = residentBytes();
    Takeover(oldFile).writeTo(newFile, progress);
    return peakBytes() - before;
}

long bytesFor(const QStringList &arguments)
{
    const QString subject = arguments.value(1);
    const QString path = arguments.value(2);
    if (subject == "plain"_L1 || subject == "cursor"_L1)
        return growthByRows(subject == "cursor"_L1, path, arguments.value(3));
    if (subject == "index"_L1)
        return growthByIndex(path);
    if (subject == "frame"_L1 || subject == "recipe"_L1)
        return bytesOfWindow(subject == "recipe"_L1, path);
    if (subject == "export"_L1)
        return growthByExport(path, arguments.value(3));
    if (subject == "takeover"_L1)
        return growthByTakeover(path, arguments.value(3));
    throw std::runtime_error("there is no such subject");
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    try {
        std::printf("%ld\n", bytesFor(QApplication::arguments()));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "memoryuse: %s\n", error.what());
        return 1;
    }
    return 0;
}
