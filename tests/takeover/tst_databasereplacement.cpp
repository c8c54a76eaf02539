#include "platform/UserVisibleError.h"
#include "support/AsNobody.h"
#include "support/FileBytes.h"
#include "support/FileSizeLimit.h"
#include "support/Rows.h"
#include "takeover/DatabaseReplacement.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using Keeping = DatabaseReplacement::Keeping;

namespace {

const QByteArray oldBytes = QByteArray("\0\1\0\0Standard Jet DB\0", 20) + "Soup";
const QString summary = u"Recipes: 1"_s;
const QStringList notes{u"Soup \"à la\u2028\": its type of 40,000\nis left out."_s};

// A program folder with an old file.
class Folder
{
public:
    Folder() { setBytes(path(), oldBytes); }

    QString path(const QString &name = u"data.rbk"_s) const { return m_folder.filePath(name); }

    // The names of the files with their bytes: "data.rbk=new"; "old" are those of the old file.
    QString files() const
    {
        QStringList files;
        const auto names =
            QDir(m_folder.path())
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                           QDir::Name);
        for (const QString &name : names) {
            const QByteArray bytes = bytesOf(path(name));
            files += name + u'=' + (bytes == oldBytes ? u"old"_s : QString::fromUtf8(bytes));
        }
        return files.join(u", "_s);
    }

    // For asNobody().
    void giveToNobody() const
    {
        constexpr uid_t nobody = 65534;
        for (const QString &name : {QString(), u"data.rbk"_s})
            QVERIFY(getuid() != 0 || chown(qPrintable(path(name)), nobody, nobody) == 0);
    }

private:
    QTemporaryDir m_folder;
};

using Act = std::function<void(const Folder &)>;

// Replaces the file up to this step in another process, which is killed then; -1 is before the new
// file is complete. Returns whether replace() has these steps.
bool replaceAndDie(const Folder &folder, Keeping keeping, int steps)
{
    constexpr int allSteps = 5;
    const pid_t child = fork();
    if (child == 0) {
        DatabaseReplacement replacement(folder.path(), keeping);
        setBytes(replacement.newFile(), "new");
        setBytes(replacement.newFile() + "-journal"_L1, "of new");
        if (steps >= 0)
            replacement.begin(summary, notes);
        bool isLeft = true;
        for (int i = 0; i < steps; ++i)
            isLeft = replacement.runNextStep();
        _exit(isLeft == (steps < allSteps) ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

// Starts again, and is killed before the user has been told anything.
bool startAndDie(const Folder &folder)
{
    const pid_t child = fork();
    if (child == 0) {
        const DatabaseReplacement replacement(folder.path());
        _exit(0);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

// Starts again, and returns what an interrupted replacement had to tell.
std::optional<ReplacementReport> startAgain(const Folder &folder)
{
    return DatabaseReplacement(folder.path()).earlierReport();
}

} // namespace

class tst_DatabaseReplacement : public QObject
{
    Q_OBJECT

    static ReplacementReport replace(const Folder &folder, Keeping keeping = Keeping::ByLink)
    {
        DatabaseReplacement replacement(folder.path(), keeping);
        setBytes(replacement.newFile(), "new");
        return replacement.replace(summary, notes);
    }

private Q_SLOTS:
    void keepsTheOldFile_data()
    {
        // The files that are there, each with its name in it, and all files afterwards.
        addRows<QStringList, QString>({
            {"first", {}, u"data old.rbk=old, data.rbk=new"_s},
            {"names taken",
             {u"data old.rbk"_s, u"data old 2.rbk-journal"_s},
             u"data old 2.rbk-journal=data old 2.rbk-journal, data old 3.rbk=old, data old.rbk=data old.rbk, data.rbk=new"_s},
            {"foreign journals",
             {u"data.rbk-journal"_s, u"data.rbk-wal"_s},
             u"data old.rbk=old, data old.rbk-journal=data.rbk-journal, data old.rbk-wal=data.rbk-wal, data.rbk=new"_s},
        });
    }

    void keepsTheOldFile()
    {
        const auto [there, expected] = fetchRow<QStringList, QString>();
        for (const Keeping keeping : {Keeping::ByLink, Keeping::ByRenaming}) {
            const Folder folder;
            for (const QString &name : there)
                setBytes(folder.path(name), name.toUtf8());
            const ReplacementReport report = replace(folder, keeping);
            QCOMPARE(folder.files(), expected);
            QCOMPARE(bytesOf(folder.path(report.keptName)), oldBytes);
        }
    }

    // A name is taken by a link that leads nowhere.
    void replacesTheFileOfALink()
    {
        const Folder folder;
        const Folder elsewhere;
        QVERIFY(QFile::remove(folder.path()) && QFile::link(elsewhere.path(), folder.path()));
        QVERIFY(QFile::link(u"nowhere"_s, elsewhere.path(u"data old.rbk"_s)));
        QVERIFY(DatabaseReplacement(folder.path()).newFile().startsWith(elsewhere.path({})));
        QCOMPARE(replace(folder).keptName, u"data old 2.rbk"_s);
        QCOMPARE(elsewhere.files(), u"data old 2.rbk=old, data old.rbk=, data.rbk=new"_s);
        QVERIFY(QFileInfo(folder.path()).isSymLink());
    }

    // The user can write the new file even if the old one was read-only.
    void keepsPermissions()
    {
        const Folder folder;
        QCOMPARE(chmod(qPrintable(folder.path()), 0460), 0);
        const QString kept = folder.path(replace(folder).keptName);
        struct stat file = {};
        QCOMPARE(stat(qPrintable(folder.path()), &file), 0);
        QCOMPARE(file.st_mode & 0777, 0660U);
        QCOMPARE(stat(qPrintable(kept), &file), 0);
        QCOMPARE(file.st_mode & 0777, 0460U);
    }

    void survivesAKill_data()
    {
        // How many steps are done, and whether the next start finishes the replacement.
        QTest::addColumn<Keeping>("keeping");
        QTest::addColumn<int>("steps");
        QTest::addColumn<bool>("isFinished");
        for (int steps = -1; steps <= 5; ++steps) {
            QTest::addRow("by link, %d", steps) << Keeping::ByLink << steps << (steps == 5);
            QTest::addRow("by renaming, %d", steps) << Keeping::ByRenaming << steps << (steps >= 4);
        }
    }

    void survivesAKill()
    {
        QFETCH(const Keeping, keeping);
        QFETCH(const int, steps);
        QFETCH(const bool, isFinished);
        const Folder folder;
        setBytes(folder.path(u"data.rbk-journal"_s), "foreign");
        QVERIFY(replaceAndDie(folder, keeping, steps));
        QVERIFY(folder.files().contains(u"=old"_s));
        QVERIFY(DatabaseReplacement::isInProgress(folder.path()));

        QVERIFY(startAndDie(folder));
        const std::optional<ReplacementReport> report = startAgain(folder);
        QCOMPARE(folder.files(),
                 isFinished ? u"data old.rbk=old, data old.rbk-journal=foreign, data.rbk=new"_s
                            : u"data.rbk=old, data.rbk-journal=foreign"_s);
        QCOMPARE(report.has_value(), isFinished);
        if (report) {
            QCOMPARE(report->keptName, u"data old.rbk"_s);
            QCOMPARE(report->summary, summary);
            QCOMPARE(report->notes, notes);
        }
        QVERIFY(!DatabaseReplacement::isInProgress(folder.path()));
    }

    void keepsWhatTheUserHasDoneSince_data()
    {
        // How many steps are done before the kill, what the user does, and the files afterwards.
        addRows<int, Act, QString>({
            {"own file between the two renames", 4,
             [](const Folder &folder) { setBytes(folder.path(), "own"); },
             u"data old.rbk=old, data old.rbk-journal=foreign, data.rbk=own"_s},
            {"report cut by a full disk", 2,
             [](const Folder &folder) {
                 setBytes(folder.path(u"data.rbk.takeover/report.json"_s), "{\"keptN");
             },
             u"data.rbk=old, data.rbk-journal=foreign"_s},
            {"new file removed", 5,
             [](const Folder &folder) { QVERIFY(QFile::remove(folder.path())); },
             u"data.rbk=old, data.rbk-journal=foreign"_s},
            {"both files removed", 5,
             [](const Folder &folder) {
                 QVERIFY(QFile::remove(folder.path())
                         && QFile::remove(folder.path(u"data old.rbk"_s)));
             },
             u"data old.rbk-journal=foreign"_s},
            {"own file in the place of the old one", 3,
             [](const Folder &folder) { setBytes(folder.path(), "own"); },
             u"data old.rbk-journal=foreign, data.rbk=own"_s},
        });
    }

    void keepsWhatTheUserHasDoneSince()
    {
        const auto [steps, act, expected] = fetchRow<int, Act, QString>();
        const Folder folder;
        setBytes(folder.path(u"data.rbk-journal"_s), "foreign");
        QVERIFY(replaceAndDie(folder, Keeping::ByRenaming, steps));
        act(folder);
        QVERIFY(!startAgain(folder));
        QCOMPARE(folder.files(), expected);
    }

    // A second program neither works in the folder nor removes what is in it.
    void isAloneInItsFolder()
    {
        const Folder folder;
        DatabaseReplacement replacement(folder.path());
        setBytes(replacement.newFile(), "new");
        try {
            startAgain(folder);
            QFAIL("both use the folder");
        } catch (const platform::UserVisibleError &error) {
            QVERIFY(error.text().contains(u"Another Pantrywise"_s));
        }
        replacement.replace(summary, notes);
        QCOMPARE(bytesOf(folder.path()), "new");
    }

    void leavesTheOldFile_data()
    {
        // What happens before the work and while the new file is written, how long files can
        // become, and what the message says.
        const Act nothing = [](const Folder &) {};
        const auto readOnly = [](const Folder &folder) {
            QFile::setPermissions(folder.path({}), QFileDevice::Permissions(0x5555));
        };
        addRows<Act, Act, rlim_t, QString>({
            {"full disk", nothing, nothing, 10, u": File too large. Nothing was changed."_s},
            {"read-only folder", readOnly, nothing, RLIM_INFINITY, u": Permission denied."_s},
            {"folder that has become read-only", nothing, readOnly, RLIM_INFINITY,
             u": Permission denied. Nothing was changed."_s},
            {"a file of the user in the way",
             [](const Folder &folder) { setBytes(folder.path(u"data.rbk.takeover"_s), "own"); },
             nothing, RLIM_INFINITY, u"data.rbk.takeover could not be created: File exists."_s},
            {"the last step fails", nothing,
             [](const Folder &folder) {
                 const QString newFile = folder.path(u"data.rbk.takeover/new.rbk"_s);
                 QVERIFY(QFile::remove(newFile) && QDir().mkdir(newFile));
             },
             RLIM_INFINITY, u": Not a directory. Nothing was changed."_s},
            {"another program", nothing,
             [](const Folder &folder) {
                 setBytes(folder.path(), oldBytes.chopped(1) + 's');
                 setBytes(folder.path(), oldBytes);
             },
             RLIM_INFINITY, u"Another program has changed "_s},
        });
    }

    void leavesTheOldFile()
    {
        const auto [before, during, limit, message] = fetchRow<Act, Act, rlim_t, QString>();
        const Folder folder;
        setBytes(folder.path(u"data.rbk-journal"_s), "foreign");
        before(folder);
        folder.giveToNobody();
        const QString files = folder.files();
        asNobody([&, &during = during, &limit = limit, &message = message] {
            try {
                DatabaseReplacement replacement(folder.path());
                setBytes(replacement.newFile(), "new");
                during(folder);
                const FileSizeLimit fullDisk(limit);
                replacement.replace(summary, notes);
                QFAIL("replaced");
            } catch (const platform::UserVisibleError &error) {
                QVERIFY2(error.text().contains(message), qPrintable(error.text()));
            }
        });
        QFile::setPermissions(folder.path({}), QFileDevice::Permissions(0x7777));
        if (DatabaseReplacement::isInProgress(folder.path()))
            QVERIFY(!startAgain(folder)); // removes what could not be removed before
        QCOMPARE(folder.files(), files);
    }
};

QTEST_GUILESS_MAIN(tst_DatabaseReplacement)
#include "tst_databasereplacement.moc"
