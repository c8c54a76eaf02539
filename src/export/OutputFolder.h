#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <system_error>

class QLockFile;

// The folder "Pantrywise", which contains the pages. An export writes them to a staging folder
// beside it, which then replaces it in one step; until then, and if anything fails, the old folder
// stays as it is, also after a power cut. Nothing that was not made by an export is ever changed.
// All failures are thrown as ExportError.
class OutputFolder
{
public:
    // The pages go to the folder "Pantrywise" in the chosen one, or to the chosen one if it is
    // itself a folder of pages. Throws ForeignFolderError if something else has that name. Removes
    // what a killed export has left, and puts back the old folder if that export had renamed it.
    explicit OutputFolder(const QString &chosen);
    ~OutputFolder(); // removes the staging folder unless it was committed

    QString path() const { return m_path; }

    // Makes the staging folder for files with these names, each of which must then be written.
    void begin(const QStringList &names);
    void write(const QString &name, QByteArrayView bytes);

    // Replaces the old folder with the staging folder. When this returns, the pages are on the
    // disk.
    void commit();

private:
    Q_DISABLE_COPY_MOVE(OutputFolder)

    bool lock();
    void keepLockFresh() const;
    void tidyUp() const;
    [[noreturn]] void fail(const QString &reason) const;
    void failIf(const std::error_code &failure) const;

    QString m_parent; // path of the folder that contains it
    QString m_path;
    QString m_staging; // path of the staging folder, empty if there is none
    QSet<QString> m_files; // names of the files in the staging folder
    std::unique_ptr<QLockFile> m_lock;
};
