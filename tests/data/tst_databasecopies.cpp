#include "data/DailyCopy.h"
#include "data/Database.h"
#include "data/DatabaseFile.h"
#include "support/AsNobody.h"
#include "support/FileBytes.h"
#include "support/FileSizeLimit.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

#include <fcntl.h>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QDate today(2026, 11, 25);

QString copyName(const QString &day)
{
    return u"data %1.rbk"_s.arg(day);
}

QString copyName(QDate day)
{
    return copyName(day.toString(Qt::ISODate));
}

// A database with a folder of copies.
class CopiedDatabase : public TestDatabase
{
public:
    QString inFolder(const QString &name) const { return folder() + u'/' + name; }
    QString inCopies(const QString &name) const { return inFolder(u"copies/"_s + name); }

    DatabaseCopies copies() const { return DatabaseCopies(path()); }

    // Makes a copy without a connection, of the state in which the file has this many recipes.
    void makeCopy(QDate day, int recipes = 0) const
    {
        write(u"DELETE FROM Recipes"_s);
        for (int i = 0; i < recipes; ++i)
            write(u"INSERT INTO Recipes (RecipeName) VALUES ('Soup')"_s);
        copyFile(day);
    }

    void copyFile(QDate day) const
    {
        DatabaseFile file(path());
        copies().makeCopy(file, day);
    }

    static QStringList names(const QString &folder)
    {
        return QDir(folder).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
};

// Returns whether this program has the lock on the file for writing. Only another process can tell.
bool isLockedForOthers(const QString &path)
{
    const pid_t child = fork();
    if (child == 0) {
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        const int file = open(qPrintable(path), O_RDWR);
        _exit(fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

using Change = std::function<void(const CopiedDatabase &)>;

} // namespace

class tst_DatabaseCopies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsDaysAndMonths_data()
    {
        // The days of the copies that are there, the day of the new one, and those removed.
        addRows<QString, QString, QString>({
            {"first", u""_s, u"2026-11-25"_s, u""_s},
            {"seven days and the first of the month",
             u"2026-11-02 2026-11-05 2026-11-06 2026-11-07 2026-11-08 2026-11-09 2026-11-10"_s,
             u"2026-11-11"_s, u""_s},
            {"eight days and the first of the month",
             u"2026-11-02 2026-11-05 2026-11-06 2026-11-07 2026-11-08 2026-11-09 2026-11-10 2026-11-11"_s,
             u"2026-11-12"_s, u"2026-11-05"_s},
            {"days with gaps",
             u"2026-02-28 2026-03-01 2026-03-20 2026-05-02 2026-05-30 2026-06-01 2026-06-02 2026-06-03 2026-06-04"_s,
             u"2026-06-30"_s, u"2026-03-20"_s},
            {"same month of two years",
             u"2025-12-30 2025-12-31 2026-12-01 2026-12-02 2026-12-03 2026-12-04 2026-12-05 2026-12-06"_s,
             u"2026-12-07"_s, u"2025-12-31"_s},
            {"thirteen months",
             u"2025-01-05 2025-02-05 2025-03-05 2025-04-05 2025-05-05 2025-06-05 2025-07-05 2025-08-05 2025-09-05 2025-10-05 2025-11-05 2025-12-05"_s,
             u"2026-01-01"_s, u"2025-01-05"_s},
            {"leap day", u"2028-02-29"_s, u"2028-03-01"_s, u""_s},
            {"long absence", u"2019-05-01 2019-06-01"_s, u"2026-11-25"_s, u""_s},
            {"a clock that was wrong", u"2026-11-23 2036-01-01"_s, u"2026-11-25"_s, u""_s},
        });
    }

    void keepsDaysAndMonths()
    {
        const auto [there, day, removed] = fetchRow<QString, QString, QString>();
        const CopiedDatabase file;
        QStringList expected{copyName(day)};
        for (const QString &earlier : there.split(u' ', Qt::SkipEmptyParts)) {
            setBytes(file.inCopies(copyName(earlier)), "copy");
            if (earlier != removed)
                expected += copyName(earlier);
        }
        expected.sort();
        QVERIFY(!file.copies().hasCopyOf(QDate::fromString(day, Qt::ISODate)));
        file.makeCopy(QDate::fromString(day, Qt::ISODate));
        QCOMPARE(file.names(file.inCopies({})), expected);
        QVERIFY(file.copies().hasCopyOf(QDate::fromString(day, Qt::ISODate)));
        QCOMPARE(bytesOf(file.inCopies(copyName(day))), bytesOf(file.path()));
    }

    // More copies than are kept, so that each of these would be removed if it were taken for one.
    void removesNothingElse()
    {
        const CopiedDatabase file;
        for (int number = 10; number < 25; ++number)
            setBytes(file.inCopies(copyName(u"2026-11-%1"_s.arg(number))), "copy");
        QStringList foreign{
            u"data 2020-02-30.rbk"_s,      u"data 2020-01-01.rbk.bak"_s, u"data 2020-01-01.RBK"_s,
            u"Data 2020-01-01.rbk"_s,      u"data 2020-1-01.rbk"_s,      u"data  2020-01-01.rbk"_s,
            u"data 2020-01-01 2.rbk"_s,    u"data2020-01-01.rbk"_s,      u"2020-01-01.rbk"_s,
            u"recipes 2020-01-01.rbk"_s,   u".data 2020-01-01.rbk"_s,    u"data 2020-01-01"_s,
            u"data 2020-01-01T00:00.rbk"_s};
        for (const QString &name : std::as_const(foreign))
            setBytes(file.inCopies(name), "mine");
        QVERIFY(QDir().mkpath(file.inCopies(copyName(u"2020-03-01"_s))));
        QVERIFY(QFile::link(file.path(), file.inCopies(copyName(u"2020-03-02"_s))));
        foreign += {copyName(u"2020-03-01"_s), copyName(u"2020-03-02"_s)};
        setBytes(file.inCopies(u"data.rbk.new"_s), "of a program that was killed");
        file.makeCopy(today);
        QStringList kept = foreign;
        for (const int number : {10, 19, 20, 21, 22, 23, 24, 25})
            kept += copyName(u"2026-11-%1"_s.arg(number));
        const QStringList names = file.names(file.inCopies({}));
        QCOMPARE(QSet(names.begin(), names.end()), QSet(kept.begin(), kept.end()));
        QCOMPARE(file.copies().newestSoundCopy(today).value().day, today);
    }

    // The first write of the next day does the same, also in the same run.
    void copiesBeforeTheFirstWriteOfADay()
    {
        const CopiedDatabase file;
        const auto database = Database::open(file.path());
        for (int recipes = 0; recipes < 2; ++recipes) {
            Transaction transaction(*database);
            QCOMPARE(file.copies().newestSoundCopy(today).value().recipes, recipes);
            QVERIFY(isLockedForOthers(file.path()));
            database->Execute(u"INSERT INTO Recipes (RecipeName) VALUES ('Soup')"_s);
            transaction.commit();
            const QString copy = file.inCopies(copyName(QDate::currentDate()));
            const QByteArray bytes = bytesOf(copy);
            database->Execute(u"INSERT INTO Utensils (UtensilName) VALUES ('Pan')"_s);
            QCOMPARE(bytesOf(copy), bytes);
            QVERIFY(QFile::rename(copy, file.inCopies(copyName(today.addYears(-1 - recipes)))));
        }
        // A file that has become damaged since is not copied. SQLite reads pages again if the
        // change counter, the four bytes at 24, differs.
        QByteArray bad = bytesOf(file.path()).replace(24, 4, QByteArray("\0\0\7\7", 4));
        bad.replace(4096, bad.size() - 4096, QByteArray(bad.size() - 4096, 'U'));
        setBytes(file.path(), bad);
        QVERIFY(!failureOf([&] { Transaction next(*database); }).isNull());
        QVERIFY(!file.copies().hasCopyOf(QDate::currentDate()));
    }

    void tellsOnceThatThereIsNoCopy()
    {
        const CopiedDatabase file;
        SQLite::Database other = file.other();
        other.exec("PRAGMA journal_mode = WAL");
        DatabaseFile opened(file.path());
        DailyCopy copy(file.path());
        QVERIFY(copy.isDue(today));
        copy.make(opened, today);
        QVERIFY(!copy.isDue(today) && copy.isDue(today.addDays(1)));
        QVERIFY(copy.takeFailure().contains(u"in a second file"_s));
        copy.make(opened, today.addDays(1));
        QCOMPARE(copy.takeFailure(), QString());
        QVERIFY(!QFile::exists(file.inCopies({})));
    }

    void copiesThroughALink()
    {
        const CopiedDatabase file;
        const QTemporaryDir elsewhere;
        const QString link = elsewhere.filePath(u"data.rbk"_s);
        QVERIFY(QFile::link(file.path(), link));
        file.makeCopy(today);
        QVERIFY(DatabaseCopies(link).hasCopyOf(today));
    }

    void reportsWhyThereIsNoCopy_data()
    {
        addRows<Change, QString>({
            {"copies is a file",
             [](const CopiedDatabase &file) {
                 QDir(file.inCopies({})).removeRecursively();
                 setBytes(file.inFolder(u"copies"_s), "mine");
             },
             u"Not a directory"_s},
            {"a folder has the name",
             [](const CopiedDatabase &file) { QDir().mkpath(file.inCopies(copyName(today))); },
             u"File exists"_s},
            {"no room",
             [](const CopiedDatabase &file) { setBytes(file.path(), QByteArray(1 << 20, 'x')); },
             u"File too large"_s},
            {"no right",
             [](const CopiedDatabase &file) {
                 QFile::setPermissions(file.inCopies({}), QFileDevice::Permissions(0x5555));
             },
             u"Permission denied"_s},
        });
    }

    void reportsWhyThereIsNoCopy()
    {
        const auto [change, reason] = fetchRow<Change, QString>();
        const CopiedDatabase file;
        file.makeCopy(today.addDays(-1));
        for (const QString &folder : {file.folder(), file.inCopies({})})
            QFile::setPermissions(folder, QFileDevice::Permissions(0x7777));
        change(file);
        const QStringList before = file.names(file.inCopies({}));
        const FileSizeLimit limit(1 << 19);
        asNobody([&, &reason = reason] {
            const QString failure = failureOf([&] { file.copyFile(today); });
            QVERIFY2(failure.contains(reason), qPrintable(failure));
        });
        QCOMPARE(file.names(file.inCopies({})), before);
    }

    void findsTheNewestSoundCopy_data()
    {
        const auto overwrite = [](const QByteArray &bytes) -> Change {
            return [bytes](const CopiedDatabase &file) {
                setBytes(file.inCopies(copyName(today)), bytes);
            };
        };
        // What happens to the newest of three copies, the second of which is damaged, and how many
        // recipes are in the one that is found.
        addRows<Change, int>({
            {"nothing", [](const CopiedDatabase &) {}, 3},
            {"empty", overwrite({}), 1},
            {"text", overwrite("Soup\r\n"_ba.repeated(500)), 1},
            {"cut inside the last page",
             [](const CopiedDatabase &file) {
                 QFile copy(file.inCopies(copyName(today)));
                 QVERIFY(copy.resize(copy.size() - 1));
             },
             1},
            {"newer version",
             [](const CopiedDatabase &file) {
                 SQLite::Database(file.inCopies(copyName(today)).toStdString(),
                                  SQLite::OPEN_READWRITE)
                     .exec("PRAGMA user_version = 2");
             },
             1},
            {"table missing",
             [](const CopiedDatabase &file) {
                 SQLite::Database(file.inCopies(copyName(today)).toStdString(),
                                  SQLite::OPEN_READWRITE)
                     .exec("DROP TABLE RecipeUtensils");
             },
             1},
            {"link",
             [](const CopiedDatabase &file) {
                 const QString copy = file.inCopies(copyName(today));
                 QVERIFY(QFile::rename(copy, file.inFolder(u"moved"_s))
                         && QFile::link(file.inFolder(u"moved"_s), copy));
             },
             1},
        });
    }

    void findsTheNewestSoundCopy()
    {
        const auto [change, recipes] = fetchRow<Change, int>();
        const CopiedDatabase file;
        for (const int number : {1, 2, 3})
            file.makeCopy(today.addDays(number - 3), number);
        const QString second = file.inCopies(copyName(today.addDays(-1)));
        setBytes(second, bytesOf(second).replace(4096, 4096, QByteArray(4096, 'U')));
        change(file);
        const DatabaseCopy found = file.copies().newestSoundCopy(today).value();
        QCOMPARE(found.recipes, recipes);
        QCOMPARE(found.day, today.addDays(recipes - 3));
    }

    void putsBack_data()
    {
        // The files beside the copies, before and afterwards without data.rbk.
        addRows<QStringList, QString>({
            {"damaged", {u"data.rbk"_s}, u"data damaged 2026-11-25.rbk"_s},
            {"missing", {}, u""_s},
            {"with its journal",
             {u"data.rbk"_s, u"data.rbk-journal"_s},
             u"data damaged 2026-11-25.rbk data damaged 2026-11-25.rbk-journal"_s},
            {"a journal alone", {u"data.rbk-wal"_s}, u"data damaged 2026-11-25.rbk-wal"_s},
            {"for the third time",
             {u"data.rbk"_s, u"data damaged 2026-11-25.rbk"_s,
              u"data damaged 2026-11-25 2.rbk-journal"_s},
             u"data damaged 2026-11-25 2.rbk-journal data damaged 2026-11-25 3.rbk data damaged 2026-11-25.rbk"_s},
            {"a file of the user",
             {u"data.rbk"_s, u"data.rbk.new"_s},
             u"data damaged 2026-11-25.rbk data.rbk.new"_s},
        });
    }

    // Each file contains its own name.
    void putsBack()
    {
        const auto [there, kept] = fetchRow<QStringList, QString>();
        const CopiedDatabase file;
        file.makeCopy(today.addDays(-1), 2);
        QVERIFY(QFile::remove(file.path()));
        for (const QString &name : there)
            setBytes(file.inFolder(name), name.toUtf8());
        const DatabaseCopies copies = file.copies();
        copies.putBack(copies.newestSoundCopy(today).value(), today);
        QStringList names = file.names(file.folder());
        QVERIFY(names.removeOne(u"copies"_s) && names.removeOne(u"data.rbk"_s));
        QCOMPARE(names.join(u' '), kept);
        QByteArrayList contents;
        for (const QString &name : std::as_const(names))
            contents += bytesOf(file.inFolder(name));
        for (const QString &name : there)
            QVERIFY(name.endsWith(".new"_L1) || contents.removeOne(name.toUtf8()));
        QCOMPARE(file.stored("SELECT count(*) FROM Recipes"), u"2"_s);
        QCOMPARE(file.copies().newestSoundCopy(today).value().recipes, 2);
    }

    void leavesTheFileAlone_data()
    {
        addRows<Change, QString>({
            {"no right",
             [](const CopiedDatabase &file) {
                 QFile::setPermissions(file.folder(), QFileDevice::Permissions(0x5555));
             },
             u"Permission denied"_s},
            {"another program has put a copy back",
             [](const CopiedDatabase &file) { setBytes(file.path(), "a file from elsewhere"); },
             QString()},
        });
    }

    void leavesTheFileAlone()
    {
        const auto [change, reason] = fetchRow<Change, QString>();
        const CopiedDatabase file;
        file.makeCopy(today);
        QFile::setPermissions(file.folder(), QFileDevice::Permissions(0x7777));
        setBytes(file.path(), "bad");
        setBytes(file.path() + "-journal"_L1, "bad");
        const DatabaseCopies copies = file.copies();
        change(file);
        const QByteArray before = bytesOf(file.path());
        asNobody([&, &reason = reason] {
            const QString failure =
                failureOf([&] { copies.putBack(copies.newestSoundCopy(today).value(), today); });
            QVERIFY2(failure.contains(reason), qPrintable(failure));
            QCOMPARE(failure.isNull(), reason.isNull());
        });
        QCOMPARE(bytesOf(file.path()), before);
        QCOMPARE(file.names(file.folder()),
                 QStringList({u"copies"_s, u"data.rbk"_s, u"data.rbk-journal"_s}));
        QFile::setPermissions(file.folder(), QFileDevice::Permissions(0x7777));
    }
};

QTEST_GUILESS_MAIN(tst_DatabaseCopies)
#include "tst_databasecopies.moc"
