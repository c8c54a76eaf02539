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
constexpr QByteArrayView listHead =
    "Pantrywise has made these files. Its next export into this place removes them.\n";

// The names of the files that an export has made in the folder, or nothing where none has.
std::optional<QSet<QString>> madeFiles(const QString &folder)
{
    constexpr qsizetype largest = 64 << 20;
    const auto read = platform::readRegularFile(
        platform::nativePath(platform::joinPath(folder, listName)), largest);
    const auto *bytes = std::get_if<QByteArray>(&read);
    if (!bytes || !bytes->startsWith(listHead) || QFileInfo(folder).isSymLink())
        return {};
    const QStringList names =
        QString::fromUtf8(bytes->sliced(listHead.size())).split(u'\n', Qt::SkipEmptyParts);
    QSet<QString> files(names.begin(), names.end());
    files.insert(listName);
    return files;
}

// The first name in the folder that is not among these, or is no file; empty for none.
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

void requireOwn(const QString &folder)
{
    const QFileInfo there(folder);
    if (!there.exists() && !there.isSymLink())
        return;
    const QString shown = QDir::toNativeSeparators(folder);
    const auto files = madeFiles(folder);
    if (!files)
        throw ForeignFolderError(
            Text::tr("%1 was not made by an export, so nothing was exported there. "
                     "Move it away, or choose another place.")
                .arg(shown));
    if (const QString foreign = firstForeign(folder, *files); !foreign.isEmpty())
        throw ForeignFolderError(
            Text::tr("The folder %1 holds %2, which no export has made, so nothing "
                     "was exported there. Move that away, or choose another place.")
                .arg(shown, foreign));
}

// Removes the files and then the list of them, so that what is interrupted can be gone on with, and
// the folder where nothing else is in it.
void removePages(const QString &folder, const QSet<QString> &files)
{
    for (const QString &name : files) {
        if (name != listName && !name.contains(u'/'))
            QFile::remove(platform::joinPath(folder, name));
    }
    if (firstForeign(folder, {listName}).isEmpty())
        QFile::remove(platform::joinPath(folder, listName));
    QDir().rmdir(folder); // refuses where anything is left
}

void removePages(const QString &folder)
{
    if (const auto files = madeFiles(folder))
        removePages(folder, *files);
    else
        QDir().rmdir(folder);
}

// The folder in which the folder of pages lies: the chosen one, or where that is one, its parent.
QString placeOf(const QString &chosen)
{
    const QDir directory(QDir::cleanPath(chosen));
    if (directory.dirName() == folderName && madeFiles(directory.path()))
        return QFileInfo(directory.absolutePath()).path();
    return directory.path();
}

} // namespace

OutputFolder::OutputFolder(const QString &chosen)
    : m_place(placeOf(chosen))
    , m_path(QDir(m_place).filePath(folderName))
    , m_lock(std::make_unique<QLockFile>(QDir(m_place).filePath("Pantrywise.lock"_L1)))
{
    requireOwn(m_path);
    m_lock->setStaleLockTime(0);
    if (!m_lock->tryLock() && m_lock->error() == QLockFile::LockFailedError)
        fail(Text::tr("another export into that place is running"));
    removeLeftOvers();
}

OutputFolder::~OutputFolder()
{
    if (!m_staging.isEmpty())
        removePages(m_staging, m_files);
}

void OutputFolder::removeLeftOvers() const
{
    const QDir directory(m_place);
    const QStringList names = directory.entryList({stagingName + u'*'}, QDir::Dirs);
    for (const QString &name : names)
        removePages(directory.filePath(name));
}

void OutputFolder::fail(const QString &reason) const
{
    throw ExportError(
        Text::tr("The pages could not be written to %1: %2.\nNothing was exported, and earlier "
                 "pages are as they were. Put that right, or choose another place.")
            .arg(QDir::toNativeSeparators(m_path), reason));
}

void OutputFolder::begin(const QStringList &names)
{
    QString folder = QDir(m_place).filePath(stagingName);
    std::error_code failure;
    while (!std::filesystem::create_directory(platform::nativePath(folder), failure)) {
        if (failure)
            fail(QString::fromStdString(failure.message()));
        folder += u'+'; // something else has the name
    }
    m_staging = folder;
    m_files = {names.begin(), names.end()};
    write(listName, listHead.toByteArray() + names.join(u'\n').toUtf8() + '\n');
}

void OutputFolder::write(const QString &name, QByteArrayView bytes)
{
    QFile file(platform::joinPath(m_staging, name));
    bool isWritten = file.open(QIODevice::NewOnly | QIODevice::Unbuffered);
    while (isWritten && !bytes.isEmpty()) { // QFile says why only if it could write nothing
        const qint64 count = file.write(bytes.data(), bytes.size());
        isWritten = count > 0;
        bytes = bytes.sliced(std::max(count, qint64{0}));
    }
    if (isWritten)
        file.close(); // some file systems report only now that the disk is full
    if (file.error() != QFileDevice::NoError)
        fail(file.errorString());
}

void OutputFolder::commit()
{
    requireOwn(m_path); // something may have come into it meanwhile
    if (const std::error_code failure = platform::exchangeDirectories(
            platform::nativePath(m_staging), platform::nativePath(m_path)))
        fail(QString::fromStdString(failure.message()));
    removePages(m_staging); // which is the old one now
    m_staging.clear();
}
