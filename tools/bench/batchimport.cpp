#include "Bench.h"
#include "BenchWindow.h"
#include "RecipeFiles.h"
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

// The Import window with its importer and an empty database.
class Dialog
{
public:
    explicit Dialog(Bench &bench)
        : m_importer(m_window.frame.interaction())
    {
        DatabasePath = emptyDatabase(bench);
        m_importer.Form_Load();
        m_importer.openDataSources();
        m_dialog = &m_window.open<frmImport>(m_importer);
    }

    // Opens a folder, as a double click on it does.
    void enter(const QString &folder)
    {
        auto &list = *m_dialog->findChild<QListView *>(u"dirRecipes"_s);
        for (int row = list.model()->rowCount() - 1; row >= 0; --row) {
            const QModelIndex index = list.model()->index(row, 0);
            if (index.data().toString().trimmed() != folder)
                continue;
            Q_EMIT list.activated(index);
            QCoreApplication::processEvents();
            return;
        }
        throw std::runtime_error("a folder is missing from the list");
    }

    void enterPath(const QString &path)
    {
        auto &drives = *m_dialog->findChild<QComboBox *>(u"drvRecipes"_s);
        drives.setCurrentIndex(drives.findText(u"/"_s));
        Q_EMIT drives.activated(drives.currentIndex());
        const QStringList folders = path.split(u'/', Qt::SkipEmptyParts);
        for (const QString &folder : folders)
            enter(folder);
    }

    void import() { m_dialog->findChild<QPushButton *>(u"cmdImport"_s)->click(); }

private:
    BenchWindow m_window;
    frmImportRecipe m_importer;
    frmImport *m_dialog;
};

Cost importByDialog(Bench &bench)
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

// Returns the longest time, in seconds, that a file takes when one process for each folder imports
// at the same time.
Cost longestFile(Bench &bench, const QStringList &folders)
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
    return {longest};
}

} // namespace

void measureBatchImport(Bench &bench)
{
    const int size = std::min(10'000, bench.largest());
    const std::vector<RecipeFile> files = writeFiles(bench, u"files"_s, 0, size);
    writeFiles(bench, u"other files"_s, size, size);
    const std::string count = formatNumber(std::ssize(files));
    bench.report({"import " + count
                      + " files in the Import window (baseline: insert the same rows in one "
                        "transaction)",
                  0,
                  Unit::Seconds,
                  compare([&] { return insertPlainly(bench, files); },
                          [&] { return importByDialog(bench); }),
                  {Limit::Kind::Ratio, 1.8}});

    Dialog dialog(bench);
    dialog.enterPath(bench.path(u"files"_s));
    bench.report({"list a directory of " + count + " files (baseline: readdir)",
                  0,
                  Unit::Seconds,
                  compare([&] { return secondsOf([&] { readDirectory(bench.path(u"files"_s)); }); },
                          [&] { return secondsOf([&] { dialog.enter(u"files"_s); }); }),
                  {Limit::Kind::Ratio, 3}});
    bench.report({"two processes import " + count
                      + " files each at the same time: longest time for a file (baseline: one "
                        "process)",
                  0,
                  Unit::Seconds,
                  compare([&] { return longestFile(bench, {u"files"_s}); },
                          [&] {
                              return longestFile(bench, {u"files"_s, u"other files"_s});
                          }),
                  {Limit::Kind::Absolute, 0.5}});
}
