#include "data/DataSource.h"
#include "support/AsNobody.h"
#include "support/FileBytes.h"
#include "support/FileSizeLimit.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

#include <QElapsedTimer>

#include <functional>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

using Permissions = QFileDevice::Permissions;
constexpr Permissions mayRead{0x5555};
constexpr Permissions mayWrite{0x7777};

using Damage = std::function<void(const TestDatabase &)>;

// A window's data source for the utensils.
class Utensils
{
public:
    explicit Utensils(const TestDatabase &file)
        : m_path(file.path())
    {
        m_source.DatabaseName = m_path;
        m_source.RecordSource = u"Utensils"_s;
    }

    Database &database() { return m_source.Database(); }
    RecordCursor &cursor() { return m_source.Recordset(); }
    qsizetype count() { return m_source.Recordset().RecordCount(); }
    void add(const QString &name = u"Pan"_s)
    {
        m_source.Recordset().AddNew();
        m_source.Recordset().setValue("UtensilName"_L1, name);
        m_source.Recordset().Update();
    }

    // Whether the action fails with a text that contains `message` and the file's path.
    template <typename Action>
    bool fails(const QString &message, Action action) const
    {
        const QString failure = failureOf(action);
        return failure.contains(message) && failure.contains(m_path);
    }

private:
    const QString m_path;
    DataSources m_sources;
    DataSource m_source{m_sources};
};

// Logs each change with the utensils that are in the file when it is announced.
class ChangeLog final : public ChangeObserver
{
public:
    explicit ChangeLog(Database &database)
        : m_database(database)
    {
        m_database.addObserver(*this);
    }
    ~ChangeLog() { m_database.removeObserver(*this); }
    Q_DISABLE_COPY_MOVE(ChangeLog)

    void aboutToChange(const TableChange &change) override
    {
        const auto row = change.rowid ? QString::number(*change.rowid) : u"any"_s;
        const std::string count =
            m_database.connection().execAndGet("SELECT count(*) FROM Utensils").getString();
        entries += u"%1 %2 of %3"_s.arg(change.isInsertion ? u"new"_s : row,
                                        QString::fromLatin1(schemaTables()[change.table].name),
                                        QString::fromStdString(count));
        if (throws)
            throw DatabaseError(u"No"_s);
    }

    QStringList entries;
    bool throws = false;

private:
    Database &m_database;
};

using Situation = std::function<void(SQLite::Database &, Utensils &)>;

} // namespace

class tst_Database : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rejectsBadFile_data()
    {
        const auto overwrite = [](const QByteArray &bytes) -> Damage {
            return [bytes](const TestDatabase &file) { setBytes(file.path(), bytes); };
        };
        const auto execute = [](const QString &statement) -> Damage {
            return [statement](const TestDatabase &file) { file.write(statement); };
        };
        const Damage remove = [](const TestDatabase &file) { QFile::remove(file.path()); };
        const Damage makeFolder = [remove](const TestDatabase &file) {
            remove(file);
            QVERIFY(QDir().mkpath(file.path()));
        };
        const Damage close = [](const TestDatabase &file) {
            QFile::setPermissions(file.path(), {});
        };
        const Damage cutOff = [](const TestDatabase &file) { QFile::resize(file.path(), 26624); };
        const QByteArray access =
            QByteArray("\0\1\0\0Standard Jet DB\0", 20).leftJustified(4096, '\1');
        addRows<Damage, QString>({
            {"missing", remove, u"is missing. Put your last copy"_s},
            {"folder", makeFolder, u"is a folder"_s},
            {"unreadable", close, u"You are not allowed to read the recipe database"_s},
            {"empty", overwrite({}), u"is empty. Put your last copy"_s},
            {"other database", overwrite(access), u"Start Pantrywise again to be asked"_s},
            {"text file", overwrite("Soup\r\n"_ba.repeated(500)),
             u"is not a recipe database. Put your last copy"_s},
            {"cut off", cutOff, u"is damaged"_s},
            {"table missing", execute(u"DROP TABLE RecipeUtensils"_s),
             u"the table RecipeUtensils is missing"_s},
            {"newer version", execute(u"PRAGMA user_version = 2"_s), u"made by a newer version"_s},
        });
    }

    void rejectsBadFile()
    {
        const auto [damage, message] = fetchRow<Damage, QString>();
        const TestDatabase file;
        const QByteArray good = bytesOf(file.path());
        QFile::setPermissions(file.folder(), mayWrite);
        damage(file);
        const QByteArray before = bytesOf(file.path());

        Utensils utensils(file);
        asNobody([&, &message = message] {
            QVERIFY(utensils.fails(message, [&] { utensils.count(); }));
        });
        QCOMPARE(bytesOf(file.path()), before);

        // The same window works after a good file has been put in the place of the bad one.
        QDir(file.path()).removeRecursively();
        QFile::remove(file.path());
        setBytes(file.path(), good);
        utensils.add();
        QCOMPARE(utensils.count(), 1);
    }

    void reportsDamagedPage()
    {
        const TestDatabase file;
        file.write(u"INSERT INTO Utensils (UtensilName) VALUES (hex(zeroblob(30000)))"_s);
        const QByteArray page = "SELECT rootpage - 1 FROM sqlite_schema WHERE name = 'Utensils'";
        const int at = file.stored(page).toInt() * 4096;
        setBytes(file.path(), bytesOf(file.path()).replace(at, 4096, QByteArray(4096, 'U')));
        Utensils utensils(file);
        QVERIFY(utensils.fails(u"is damaged"_s, [&] { utensils.count(); }));
    }

    void readsWithoutWritePermission_data()
    {
        addRows<Permissions, Permissions, QString>(
            {{"file", mayRead, mayWrite, u"because it is read-only"_s},
             {"folder", mayWrite, mayRead, u"because its folder "_s}});
    }

    void readsWithoutWritePermission()
    {
        const auto [ofFile, ofFolder, message] = fetchRow<Permissions, Permissions, QString>();
        const TestDatabase file;
        const QByteArray before = bytesOf(file.path());
        QFile::setPermissions(file.path(), ofFile);
        QFile::setPermissions(file.folder(), ofFolder);
        asNobody([&, &message = message] {
            Utensils utensils(file);
            QCOMPARE(utensils.count(), 0);
            QVERIFY(utensils.fails(message, [&] { utensils.add(); }));
        });
        QCOMPARE(bytesOf(file.path()), before);
        QFile::setPermissions(file.folder(), mayWrite);
    }

    void noticesThatTheFileIsGone_data()
    {
        addRows<bool>({{"removed", false}, {"replaced", true}});
    }

    void noticesThatTheFileIsGone()
    {
        const auto [isReplaced] = fetchRow<bool>();
        const TestDatabase file;
        const QByteArray other = isReplaced ? bytesOf(file.path()) : QByteArray();
        file.write(u"INSERT INTO Utensils (UtensilName) VALUES ('Pot')"_s);
        Utensils utensils(file);
        QCOMPARE(utensils.count(), 1);
        QFile::remove(file.path());
        if (isReplaced)
            setBytes(file.path(), other);
        QVERIFY(utensils.fails(u"was moved or replaced"_s, [&] { utensils.add(); }));
        QCOMPARE(bytesOf(file.path()), other);
    }

    // Another file takes the place of the one that two windows have open.
    void readsOnInAnotherFile()
    {
        const TestDatabase file;
        file.write(u"INSERT INTO Utensils (UtensilName) VALUES ('Pot'), ('Pan')"_s);
        const QByteArray copy = bytesOf(file.path());
        Utensils reading(file);
        Utensils adding(file);
        adding.add();
        QCOMPARE(reading.count(), 3);
        reading.cursor().MoveLast();
        QFile::rename(file.path(), file.path() + u".old"_s);
        setBytes(file.path(), copy);
        Database::reopen(file.path());

        QVERIFY(failureOf([&] { reading.cursor().Delete(); }).contains(u"was replaced"_s));
        reading.cursor().Requery();
        QCOMPARE(reading.count(), 2);
        adding.add(u"Whisk"_s);
        adding.cursor().Requery();
        adding.cursor().MoveLast();
        adding.cursor().Delete();
        reading.cursor().Requery();
        QCOMPARE(reading.count(), 2);
        Database::reopen(file.folder()); // is not open
    }

    void announcesChanges_data()
    {
        using Action = std::function<void(Utensils &)>;
        const auto execute = [](const QString &statement) -> Action {
            return [statement](Utensils &utensils) { utensils.database().Execute(statement); };
        };
        addRows<Action, QStringList>({
            {"insertion", [](Utensils &utensils) { utensils.add(); }, {u"new Utensils of 2"_s}},
            {"update",
             [](Utensils &utensils) {
                 utensils.cursor().MoveLast();
                 utensils.cursor().Edit();
                 utensils.cursor().setValue("UtensilName"_L1, u"Pot"_s);
                 utensils.cursor().Update();
             },
             {u"7 Utensils of 2"_s}},
            {"deletion",
             [](Utensils &utensils) { utensils.cursor().Delete(); },
             {u"5 Utensils of 2"_s}},
            {"statement",
             execute(u"DELETE utensils.* From utensils WHERE (((utensils.x)=1))"_s),
             {u"any Utensils of 2"_s}},
            {"statement on two tables",
             execute(u"UPDATE Utensils SET UtensilName = (SELECT count(*) FROM Recipes)"_s),
             {u"any Recipes of 2"_s, u"any Utensils of 2"_s}},
        });
    }

    void announcesChanges()
    {
        const auto [action, entries] = fetchRow<std::function<void(Utensils &)>, QStringList>();
        const TestDatabase file;
        file.write(u"ALTER TABLE Utensils ADD x; INSERT INTO Utensils (UtensilID, x) "
                   "VALUES (5, 1), (7, 2)"_s);
        Utensils utensils(file);
        const QString before = file.stored("SELECT * FROM Utensils");
        ChangeLog log(utensils.database());
        log.throws = true;
        QCOMPARE(failureOf([&, &action = action] { action(utensils); }), u"No"_s);
        QCOMPARE(file.stored("SELECT * FROM Utensils"), before);
        log.entries.clear();
        log.throws = false;
        action(utensils);
        QCOMPARE(log.entries, entries);
        QVERIFY(file.stored("SELECT * FROM Utensils") != before);
    }

    void survivesFullDisk_data()
    {
        addRows<int>({{"fails at the commit", 200'000}, {"fails before the commit", 40'000'000}});
    }

    void survivesFullDisk()
    {
        const auto [length] = fetchRow<int>();
        const QString name(length, u'x');
        const TestDatabase file;
        const QByteArray before = bytesOf(file.path());
        Utensils utensils(file);
        const FileSizeLimit limit(65536);
        {
            Transaction outer(utensils.database());
            utensils.add();
            const QString failure = failureOf([&] {
                Transaction inner(utensils.database());
                utensils.add(name);
                inner.commit();
            });
            if (failure.isNull())
                QVERIFY(failureOf([&] { outer.commit(); }).contains(u"The disk"_s));
            // Even now a copy of the file alone is whole.
            QCOMPARE(bytesOf(file.path()), before);
            QVERIFY(!QFile::exists(file.path() + u"-journal"_s));
            // SQLite has rolled back everything, and nothing more can be written in the scope.
            const QString statement = u"INSERT INTO Utensils DEFAULT VALUES"_s;
            QVERIFY(!failureOf([&] { utensils.add(); }).isNull());
            QVERIFY(!failureOf([&] { utensils.database().Execute(statement); }).isNull());
            QVERIFY(!failureOf([&] { Transaction(utensils.database()).commit(); }).isNull());
            QVERIFY(!failureOf([&] { outer.commit(); }).isNull());
        }
        QCOMPARE(utensils.count(), 0);
        QCOMPARE(bytesOf(file.path()), before);
        utensils.add();
        QCOMPARE(file.other().execAndGet("SELECT count(*) FROM Utensils").getInt(), 1);
    }

    void explainsFailure_data()
    {
        const auto read = [](Utensils &utensils) { utensils.count(); };
        const auto write = [](Utensils &utensils) { utensils.add(QString(10'000, u'x')); };
        const auto lock = [](SQLite::Database &other, Utensils &) {
            other.exec("BEGIN EXCLUSIVE");
        };
        const auto noRoom = [](SQLite::Database &, Utensils &utensils) {
            utensils.database().connection().exec("PRAGMA max_page_count = 1");
        };
        const auto noKeys = [](SQLite::Database &other, Utensils &) {
            other.exec("INSERT INTO Utensils (UtensilID) VALUES (9223372036854775807)");
        };
        const auto noMemory = [](SQLite::Database &, Utensils &) {
            sqlite3_hard_heap_limit64(sqlite3_memory_used() + 1);
        };
        addRows<Situation, std::function<void(Utensils &)>, QString>({
            {"locked, reading", lock, read, u"program. Wait until"_s},
            {"locked, writing", lock, write, u"program. Nothing was stored. Wait until"_s},
            {"disk full", noRoom, write, u" is full. Nothing was stored. "_s},
            {"keys used up", noKeys, write, u"The table Utensils"_s},
            {"out of memory", noMemory, read, u"There is not enough memory"_s},
        });
    }

    void explainsFailure()
    {
        const auto [situation, action, message] =
            fetchRow<Situation, std::function<void(Utensils &)>, QString>();
        const TestDatabase file;
        const auto database = Database::open(file.path(), std::chrono::milliseconds(10));
        Utensils utensils(file);
        utensils.cursor();
        SQLite::Database other = file.other();
        situation(other, utensils);
        const auto restore = qScopeGuard([] { sqlite3_hard_heap_limit64(0); });
        QVERIFY(utensils.fails(message, [&, &action = action] { action(utensils); }));
    }

    void waitsForLockUntilTimeout()
    {
        using namespace std::chrono_literals;
        const TestDatabase file;
        SQLite::Database other = file.other();
        other.exec("BEGIN EXCLUSIVE");
        QElapsedTimer time;
        time.start();
        const QString failure = failureOf([&] { Database::open(file.path(), 300ms); });
        QVERIFY(failure.contains(u"is in use by another program"_s));
        QVERIFY(time.elapsed() >= 300 && time.elapsed() < 5000);

        std::thread program([&other] {
            std::this_thread::sleep_for(100ms);
            other.exec("INSERT INTO Utensils DEFAULT VALUES; COMMIT");
        });
        Utensils utensils(file); // with the default timeout
        utensils.add();
        program.join();
        QCOMPARE(other.execAndGet("SELECT count(*) FROM Utensils").getInt(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_Database)
#include "tst_database.moc"
