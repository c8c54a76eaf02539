#include "BenchFrame.h"
#include "RecipeFiles.h"
#include "Subjects.h"
#include "data/DatabasePath.h"
#include "import/frmImport.h"
#include "import/frmImportRecipe.h"

#include <QComboBox>
#include <QDir>
#include <QListView>
#include <QProcess>
#include <QPushButton>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

// The batch dialog with its importer, on a recipe file without a row.
class Dialog
{
public:
    explicit Dialog(Bench &bench)
        : m_importer(m_desk.frame.interaction())
    {
        DatabasePath = emptyDatabase(bench);
        m_importer.Form_Load();
        m_importer.openDataSources();
        m_window = &m_desk.open<frmImport>(m_importer);
    }

    // As a double click on it does.
    void enter(const QString &folder)
    {
        auto &list = *m_window->findChild<QListView *>(u"dirRecipes"_s);
        for (int row = list.model()->rowCount() - 1; row >= 0; --row) {
            const QModelIndex index = list.model()->index(row, 0);
            if (index.data().toString().trimmed() != folder)
                continue;
            Q_EMIT list.activated(index);
            QCoreApplication::processEvents();
            return;
        }
        throw std::runtime_error("a folder is not in the list");
    }

    void enterPath(const QString &path)
    {
        auto &drives = *m_window->findChild<QComboBox *>(u"drvRecipes"_s);
        drives.setCurrentIndex(drives.findText(u"/"_s));
        Q_EMIT drives.activated(drives.currentIndex());
        const QStringList folders = path.split(u'/', Qt::SkipEmptyParts);
        for (const QString &folder : folders)
            enter(folder);
    }

    void import() { m_window->findChild<QPushButton *>(u"cmdImport"_s)->click(); }

private:
    BenchFrame m_desk;
    frmImportRecipe m_importer;
    frmImport *m_window;
};

double importByDialog(Bench &bench)
{
    Dialog dialog(bench);
    dialog.enterPath(bench.path(u"files"_s));
    return secondsOf([&] { dialog.import(); });
}

void readDirectory(const QString &folder)
{
    DIR *directory = ::opendir(QFile::encodeName(folder).constData());
    std::vector<std::string> names;
    while (const dirent *entry = ::readdir(directory))
        names.emplace_back(entry->d_name);
    ::closedir(directory);
}

// The longest time, in seconds, that a file takes when programs import these folders at once.
double longestFile(Bench &bench, const QStringList &folders)
{
    const QString database = emptyDatabase(bench);
    std::vector<std::unique_ptr<QProcess>> programs;
    for (const QString &folder : folders) {
        programs.push_back(std::make_unique<QProcess>());
        programs.back()->start(QStringLiteral(BENCH_IMPORTER), {database, bench.path(folder)});
    }
    double longest = 0;
    for (const auto &program : programs) {
        if (!program->waitForFinished(-1) || program->exitCode() != 0)
            throw std::runtime_error(program->readAllStandardError().toStdString());
        longest = std::max(longest, program->readAllStandardOutput().toDouble());
    }
    return longest;
}

} // namespace

void measureBatchImport(Bench &bench)
{
    const int size = std::min(10'000, bench.largest());
    const std::vector<RecipeFile> files = writeFiles(bench, u"files"_s, 0, size);
    writeFiles(bench, u"other files"_s, size, size);
    const std::string count = grouped(std::ssize(files));
    printResult({count
                     + " files by the dialog, from the press to the end; plain is inserts of the "
                       "same rows in one transaction",
                 0,
                 Unit::Seconds,
                 inTurns([&] { return insertPlainly(bench, files); },
                         [&] { return importByDialog(bench); }),
                 {Bound::Kind::TimesYardstick, 1.8}});

    Dialog dialog(bench);
    dialog.enterPath(bench.path(u"files"_s));
    printResult({"listing a directory of " + count + " files; plain is reading the directory",
                 0,
                 Unit::Seconds,
                 inTurns([&] { return secondsOf([&] { readDirectory(bench.path(u"files"_s)); }); },
                         [&] { return secondsOf([&] { dialog.enter(u"files"_s); }); }),
                 {Bound::Kind::TimesYardstick, 3}});
    printResult({"two programs importing " + count
                     + " files each at once: the longest time for one file; plain is one program "
                       "alone",
                 0,
                 Unit::Seconds,
                 inTurns([&] { return longestFile(bench, {u"files"_s}); },
                         [&] {
                             return longestFile(bench, {u"files"_s, u"other files"_s});
                         }),
                 {Bound::Kind::AtMost, 0.5}});
}
