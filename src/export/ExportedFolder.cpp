#include "export/ExportedFolder.h"

#include "export/ExportError.h"
#include "interaction/ControlCharacters.h"
#include "platform/DirectoryExchange.h"
#include "platform/Paths.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>

#include <filesystem>
#include <vector>

using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(ExportedFolder)
};

// Must not change, because it identifies the folders of earlier exports.
constexpr QByteArrayView listHeader =
    "Pantrywise has made these files. Its next export into this place removes them.\n";

bool isMadeByDesktop(const QString &name)
{
    return name == ".DS_Store"_L1 || name.startsWith("._"_L1) || name == "Thumbs.db"_L1
        || name == "desktop.ini"_L1 || name == ".directory"_L1;
}

struct Contents {
    std::vector<fs::path> removable; // exported files and those of desktops
    QStringList foreign; // names of everything else, sorted
    std::error_code failure; // why the folder could not be read
};

// QDirIterator would leave out names that are not valid text.
Contents contentsOf(const QString &folder, const QSet<QString> &files)
{
    Contents contents;
    fs::directory_iterator entry(platform::nativePath(folder), contents.failure);
    for (; entry != fs::directory_iterator(); entry.increment(contents.failure)) {
        const QString name = platform::displayPath(entry->path().filename());
        std::error_code ignored; // then it is not a directory
        if ((files.contains(name) || isMadeByDesktop(name)) && !entry->is_directory(ignored))
            contents.removable.push_back(entry->path());
        else
            contents.foreign += name;
    }
    contents.foreign.sort();
    return contents;
}

// Returns for example "a, b, c and 12 more".
QString enumerated(const QStringList &names)
{
    constexpr qsizetype most = 100; // the box scrolls
    const QString shown = escapeControlCharacters(names.mid(0, most).join(u", "_s));
    return names.size() <= most
        ? shown
        : Text::tr("%1 and %2 more").arg(shown, QString::number(names.size() - most));
}

} // namespace

QByteArray fileListOf(const QStringList &names)
{
    return listHeader.toByteArray() + names.join(u'\n').toUtf8() + '\n';
}

std::optional<QSet<QString>> exportedFiles(const QString &folder)
{
    constexpr qsizetype largest = 64 << 20;
    const auto read = platform::readRegularFile(
        platform::nativePath(platform::joinPath(folder, fileListName)), largest);
    const auto *bytes = std::get_if<QByteArray>(&read);
    if (!bytes || !bytes->startsWith(listHeader) || QFileInfo(folder).isSymLink())
        return {};
    const QStringList names =
        QString::fromUtf8(bytes->sliced(listHeader.size())).split(u'\n', Qt::SkipEmptyParts);
    QSet<QString> files(names.begin(), names.end());
    files.insert(fileListName);
    return files;
}

void requireExported(const QString &folder)
{
    const QFileInfo there(folder);
    if (!there.exists() && !there.isSymLink())
        return;
    const QString shown = QDir::toNativeSeparators(folder);
    const auto files = exportedFiles(folder);
    if (!files)
        throw ForeignFolderError(
            Text::tr("%1 was not made by an export, so nothing was exported there. "
                     "Move it away, or choose another place.")
                .arg(shown));
    const Contents contents = contentsOf(folder, *files);
    if (contents.failure)
        throw ForeignFolderError(
            Text::tr("The folder %1 could not be read: %2. Nothing was exported there. "
                     "Correct that, or choose another place.")
                .arg(shown, QString::fromStdString(contents.failure.message())));
    if (contents.foreign.isEmpty())
        return;
    const QString text = contents.foreign.size() == 1
        ? Text::tr("The folder %1 contains %2, which was not made by an export, so nothing was "
                   "exported there. Move it away, or choose another place.")
        : Text::tr("The folder %1 contains %2, which were not made by an export, so nothing was "
                   "exported there. Move them away, or choose another place.");
    throw ForeignFolderError(text.arg(shown, enumerated(contents.foreign)));
}

void removePages(const QString &folder, const QSet<QString> &files)
{
    const Contents contents = contentsOf(folder, files);
    const fs::path path = platform::nativePath(folder);
    const fs::path list = platform::nativePath(platform::joinPath(folder, fileListName));
    bool isEmpty = !contents.failure && contents.foreign.isEmpty();
    std::error_code failure;
    for (const fs::path &file : contents.removable) {
        if (file == list)
            continue;
        fs::remove(file, failure);
        isEmpty = isEmpty && !failure;
    }
    if (!isEmpty)
        return;
    fs::remove(list, failure);
    fs::remove(path, failure);
}

QStringList leftOverFolders(const QString &directory)
{
    static const QRegularExpression form(
        QRegularExpression::anchoredPattern(QRegularExpression::escape(stagingName)
                                            + u"\\+*(%1)?"_s.arg(QRegularExpression::escape(
                                                QLatin1StringView(platform::asideSuffix)))));
    QStringList folders;
    for (const QString &name : QDir(directory).entryList(QDir::Dirs)) {
        const QString folder = platform::joinPath(directory, name);
        if (form.match(name).hasMatch() && exportedFiles(folder))
            folders += folder;
    }
    return folders;
}
