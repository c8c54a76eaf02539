#include "export/OutputFolder.h"

#include "export/ExportError.h"
#include "platform/DirectoryExchange.h"
#include "platform/Paths.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLockFile>

#include <algorithm>
#include <filesystem>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(OutputFolder)
};

constexpr auto folderName = "Pantrywise"_L1;
constexpr auto stagingName = "Pantrywise.new"_L1;
constexpr auto listName = "pantrywise-files.txt"_L1;

// Must not change, because it identifies the folders of earlier exports.
constexpr QByteArrayView listHeader =
    "Pantrywise has made these files. Its next export into this place removes them.\n";

// Returns the names of the exported files in the folder, or nothing if it has no list of them.
std::optional<QSet<QString>> exportedFiles(const QString &folder)
{
    constexpr qsizetype largest = 64 << 20;
    const auto read = platform::readRegularFile(
        platform::nativePath(platform::joinPath(folder, listName)), largest);
    const auto *bytes = std::get_if<QByteArray>(&read);
    if (!bytes || !bytes->startsWith(listHeader) || QFileInfo(folder).isSymLink())
        return {};
    const QStringList names =
        QString::fromUtf8(bytes->sliced(listHeader.size())).split(u'\n', Qt::SkipEmptyParts);
    QSet<QString> files(names.begin(), names.end());
    files.insert(listName);
    return files;
}

// Returns the first name in the folder that is not one of these or not that of a file, or an empty
// text.
QString firstForeign(const QString &folder, const QSet<QString> &files)
{
    QStringList foreign;
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        if (!files.contains(entries.fileName()) || entries.fileInfo().isDir())
            foreign += entries.fileName();
    }
    const auto first = std::min_element(foreign.begin(), foreign.end());
    return first == foreign.end() ? QString() : *first;
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
    if (const QString foreign = firstForeign(folder, *files); !foreign.isEmpty())
        throw ForeignFolderError(
            Text::tr("The folder %1 contains %2, which was not made by an export, so nothing "
                     "was exported there. Move it away, or choose another place.")
                .arg(shown, foreign));
}

// Removes the files, then their list, and then the folder if it is empty. The list comes last so
// that the next export can finish an interrupted removal.
void removePages(const QString &folder, const QSet<QString> &files)
{
    for (const QString &name : files) {
        if (name != listName && !name.contains(u'/'))
            QFile::remove(platform::joinPath(folder, name));
    }
    if (firstForeign(folder, {listName}).isEmpty())
        QFile::remove(platform::joinPath(folder, listName));
    QDir().rmdir(folder); // fails if the folder is not empty
}

void removePages(const QString &folder)
{
    if (const auto files = exportedFiles(folder))
        removePages(folder, *files);
    else
        QDir().rmdir(folder);
}

// Returns the folder that contains the folder of pages: the chosen one, or its parent if the chosen
// one is itself a folder of pages.
QString parentOf(const QString &chosen)
{
    const QDir directory(QDir::cleanPath(chosen));
    if (directory.dirName() == folderName && exportedFiles(directory.path()))
        return QFileInfo(directory.absolutePath()).path();
    return directory.path();
}

} // namespace

OutputFolder::OutputFolder(const QString &chosen)
    : m_parent(parentOf(chosen))
    , m_path(QDir(m_parent).filePath(folderName))
    , m_lock(std::make_unique<QLockFile>(QDir(m_parent).filePath("Pantrywise.lock"_L1)))
{
    requireExported(m_path);
    m_lock->setStaleLockTime(0);
    if (!m_lock->tryLock() && m_lock->error() == QLockFile::LockFailedError)
        fail(Text::tr("another export to that folder is running"));
    removeLeftOvers();
}

OutputFolder::~OutputFolder()
{
    if (!m_staging.isEmpty())
        removePages(m_staging, m_files);
}

void OutputFolder::removeLeftOvers() const
{
    const QDir directory(m_parent);
    const QStringList names = directory.entryList({stagingName + u'*'}, QDir::Dirs);
    for (const QString &name : names)
        removePages(directory.filePath(name));
}

void OutputFolder::fail(const QString &reason) const
{
    throw ExportError(
        Text::tr("The pages could not be written to %1: %2.\nNothing was exported, and earlier "
                 "pages are as they were. Correct that, or choose another place.")
            .arg(QDir::toNativeSeparators(m_path), reason));
}

void OutputFolder::begin(const QStringList &names)
{
    QString folder = QDir(m_parent).filePath(stagingName);
    std::error_code failure;
    while (!std::filesystem::create_directory(platform::nativePath(folder), failure)) {
        if (failure)
            fail(QString::fromStdString(failure.message()));
        folder += u'+'; // the name is taken
    }
    m_staging = folder;
    m_files = {names.begin(), names.end()};
    write(listName, listHeader.toByteArray() + names.join(u'\n').toUtf8() + '\n');
}

void OutputFolder::write(const QString &name, QByteArrayView bytes)
{
    QFile file(platform::joinPath(m_staging, name));
    if (!file.open(QIODevice::NewOnly | QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(file.errorString());
    while (!bytes.isEmpty()) {
        const qint64 count = file.write(bytes.data(), bytes.size()); // may write only a part
        if (count <= 0)
            fail(file.errorString());
        bytes = bytes.sliced(count);
    }
    file.close(); // some file systems report a full disk only now
    if (file.error() != QFileDevice::NoError)
        fail(file.errorString());
}

void OutputFolder::commit()
{
    requireExported(m_path); // something else may have been put into it since
    if (const std::error_code failure = platform::exchangeDirectories(
            platform::nativePath(m_staging), platform::nativePath(m_path)))
        fail(QString::fromStdString(failure.message()));
    removePages(m_staging); // now the old folder
    m_staging.clear();
}
