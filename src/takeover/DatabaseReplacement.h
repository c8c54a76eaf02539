#pragma once

#include "platform/UserVisibleError.h"
#include "takeover/LockedFolder.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <system_error>

#include <sys/stat.h>

// What the user is told after a replacement.
struct ReplacementReport {
    QString keptName; // of the old file, beside the new one
    QString summary;
    QStringList notes;
};

// Another program replaces the file, or tells its user that it has.
class ReplacementInProgress final : public platform::UserVisibleError
{
public:
    using UserVisibleError::UserVisibleError;
};

// Puts a new recipe database in the place of an old file, which is kept unchanged beside it as
// "data old.rbk", with a number if that name is taken. If the database is a link, the file to which
// it leads is replaced.
//
// The new file is written in the folder "data.rbk.takeover", beside the old one. After a kill or a
// power cut at any moment, the old file has its own name or the name under which it is kept. In the
// second case, either the new file is in its place or the constructor of the next object puts it
// there.
class DatabaseReplacement
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseReplacement)

public:
    // How the old file gets its new name. A link keeps a file under the old name at all times, but
    // some file systems refuse links. ByLink renames the file then.
    enum class Keeping { ByLink, ByRenaming };

    // Returns whether the folder of an object exists, which another program uses or has left there.
    static bool isInProgress(const QString &databasePath);

    // Creates and locks the folder, and finishes or undoes what an interrupted replacement has
    // done. Must not be called while this program has the database open. Throws
    // ReplacementInProgress if another program uses the folder, and platform::UserVisibleError if
    // it cannot be used.
    explicit DatabaseReplacement(const QString &databasePath, Keeping keeping = Keeping::ByLink);

    // Removes the folder and what is in it. A kill before that makes the next object return the
    // same again, so call it after the user has been told.
    ~DatabaseReplacement();

    // The report of an interrupted replacement whose new file is in its place now. Nothing if there
    // was none or if it has been undone.
    const std::optional<ReplacementReport> &earlierReport() const { return m_earlierReport; }

    // The name of the old file if a replacement was interrupted and can neither be finished nor
    // undone, because the user has put another file in its place since. Empty otherwise.
    QString strandedName() const { return m_strandedName; }

    // Where the caller writes the new file, completely and synced, before replace().
    QString newFile() const;

    // Replaces the old file. Throws platform::UserVisibleError if that fails, and the old file then
    // has its own name, unless the text says something else.
    ReplacementReport replace(const QString &summary, const QStringList &notes);

    // Does what replace() does, one step with each call, so that a test can end the program between
    // two. Returns false when none is left.
    void begin(const QString &summary, const QStringList &notes);
    bool runNextStep();

private:
    Q_DISABLE_COPY_MOVE(DatabaseReplacement)

    // Identifies the contents of a file. A new link changes only the time of change.
    struct FileState {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        qint64 modifiedAt = 0; // in nanoseconds

        bool operator==(const FileState &) const = default;
    };
    static FileState stateOf(const std::filesystem::path &path);

    std::filesystem::path folder() const { return m_database.parent_path(); }
    std::filesystem::path newPath() const { return m_folder / "new.rbk"; }
    std::filesystem::path reportPath() const { return m_folder / "report.json"; }
    std::filesystem::path kept() const;
    QString freeName() const;
    std::optional<ReplacementReport> storedReport() const;

    std::error_code matchOwnerAndPermissions();
    std::error_code storeReport();
    std::error_code moveJournals();
    std::error_code keepOld();
    std::error_code putNewInPlace();

    bool settle();
    void undo();
    void removeFiles() const;

    std::filesystem::path m_database;
    Keeping m_keeping;
    LockedFolder m_folder;
    FileState m_oldState;
    ReplacementReport m_report;
    std::optional<ReplacementReport> m_earlierReport;
    QString m_strandedName;
    std::size_t m_nextStep = 0;
};
