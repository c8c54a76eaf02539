#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

class QLockFile;

// The folder "Pantrywise" with the pages. The new one is made beside it under a temporary name and
// takes its place as a whole; until then, and where anything fails, the old one stays as it is. A
// folder lists in a file of its own what an export has made in it; what holds anything else is
// never touched. Failures are thrown as ExportError.
class OutputFolder
{
public:
    // In the folder that the user has chosen, or in place of that one if it is itself such a
    // folder. Throws ForeignFolderError where something else has the name. Removes what an export
    // left that was killed.
    explicit OutputFolder(const QString &chosen);
    ~OutputFolder(); // removes a new folder that has not taken its place

    QString path() const { return m_path; }

    // Makes the new folder, for files of these names, all of which are then to be written.
    void begin(const QStringList &names);
    void write(const QString &name, QByteArrayView bytes);

    // Puts the new folder in its place and removes the old one.
    void commit();

private:
    Q_DISABLE_COPY_MOVE(OutputFolder)

    void removeLeftOvers() const;
    [[noreturn]] void fail(const QString &reason) const;

    QString m_place; // the folder in which it lies
    QString m_path;
    QString m_staging; // path of the new folder, empty while there is none
    QSet<QString> m_files; // that are written into it
    std::unique_ptr<QLockFile> m_lock;
};
