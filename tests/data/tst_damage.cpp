#include "data/RecordCursor.h"
#include "support/AsNobody.h"
#include "support/FileBytes.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString utensils = u"Utensils"_s;

void add(const std::shared_ptr<Database> &database)
{
    RecordCursor cursor(database, utensils);
    cursor.AddNew();
    cursor.Update();
}

template <typename Action>
bool isUnusable(Action action)
{
    try {
        action();
    } catch (const UnusableDatabase &) {
        return true;
    }
    return false;
}

// Leaves the file as a program does that is killed while it writes. A rollback journal must undo
// what the statements have written; a write-ahead log must be read with the file.
void interruptWrite(const TestDatabase &file, const QByteArray &statements, bool isInLog)
{
    const QString journal = file.path() + (isInLog ? u"-wal"_s : u"-journal"_s);
    QByteArray bytes;
    QByteArray journalBytes;
    {
        SQLite::Database other = file.other();
        other.exec(isInLog ? "PRAGMA journal_mode = WAL" : "PRAGMA cache_size = 1; BEGIN");
        other.exec(statements.toStdString());
        bytes = bytesOf(file.path());
        journalBytes = bytesOf(journal);
    }
    setBytes(file.path(), bytes);
    setBytes(journal, journalBytes);
}

const QByteArray manyUtensils =
    "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 40) "
    "INSERT INTO Utensils (UtensilName) SELECT hex(randomblob(1000)) FROM n";

QByteArrayList allBytes(const TestDatabase &file)
{
    return {bytesOf(file.path()), bytesOf(file.path() + u"-journal"_s),
            bytesOf(file.path() + u"-wal"_s)};
}

} // namespace

// Whatever is wrong with a file, it is told at the latest when something is to be stored, and the
// file stays as it is.
class tst_Damage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutAnywhere()
    {
        const TestDatabase file;
        const QByteArray good = bytesOf(file.path());
        for (qsizetype length = good.size() - 1; length >= 0;
             length -= length > good.size() - 4096 ? 1 : 512) {
            QFile::resize(file.path(), length);
            QVERIFY2(isUnusable([&] { Database::open(file.path()); }),
                     qPrintable(QString::number(length)));
            QVERIFY(bytesOf(file.path()) == good.first(length));
        }
    }

    void shorterThanStated_data()
    {
        // The bytes in the header that count the pages or say whether that number is valid, and the
        // number of rows after the file has been restored from the journal, if there is one.
        addRows<QByteArray, int, int>({
            {"journal", "-journal", 28, 0},
            {"log", "-wal", 28, 40},
            {"number is not valid", {}, 92, 0},
        });
    }

    void shorterThanStated()
    {
        const auto [journal, at, count] = fetchRow<QByteArray, int, int>();
        const TestDatabase file;
        const QByteArray before = bytesOf(file.path());
        if (!journal.isEmpty())
            interruptWrite(file, manyUtensils, journal == "-wal");
        QByteArray bytes = bytesOf(file.path()).first(before.size());
        bytes.replace(at, 4, "\0\0\1\0"_ba).replace(28, 4, "\0\0\1\0"_ba);
        setBytes(file.path(), bytes);
        RecordCursor cursor(Database::open(file.path()), utensils);
        QCOMPARE(cursor.RecordCount(), count);
    }

    void flippedByte_data()
    {
        const QByteArray pages =
            "SELECT min(pageno) FROM dbstat WHERE pagetype = '%1' AND name = '%2'";
        const auto page = [&](const char *type, const char *name) {
            return QByteArray(pages).replace("%1", type).replace("%2", name);
        };
        const QByteArray index = page("leaf", "RecipeUtensilsOfRecipe");
        // The query of the page, the place of the byte in it, and the journal mode. An index entry
        // ends with the number of its row.
        addRows<QByteArray, int, QByteArray>({
            {"file header", "SELECT 1", 18, "DELETE"},
            {"schema page", "SELECT 1", 104, "DELETE"},
            {"table leaf", page("leaf", "Recipes"), 4, "DELETE"},
            {"interior", page("internal", "Recipes"), 11, "DELETE"},
            {"index leaf", index, 4095, "DELETE"},
            {"index leaf, write-ahead mode", index, 4095, "WAL"},
            {"overflow", page("overflow", "Recipes"), 3, "DELETE"},
            {"freelist", {}, 7, "DELETE"},
        });
    }

    void flippedByte()
    {
        const auto [query, at, mode] = fetchRow<QByteArray, int, QByteArray>();
        const TestDatabase file;
        file.write(u"WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 300) "
                   "INSERT INTO Recipes (Instructions) SELECT hex(zeroblob(i * 30)) FROM n;"
                   "INSERT INTO RecipeUtensils SELECT RecipeID, 1 FROM Recipes;"
                   "DELETE FROM Recipes WHERE RecipeID > 200; PRAGMA journal_mode = "_s
                   + QString::fromLatin1(mode));
        QByteArray bytes = bytesOf(file.path());
        const auto page = query.isEmpty() ? qFromBigEndian<quint32>(bytes.constData() + 32)
                                          : file.stored(query).toUInt();
        QVERIFY(page > 0);
        const qsizetype place = (page - 1) * qsizetype{4096} + at;
        bytes[place] = static_cast<char>(~bytes[place]);
        setBytes(file.path(), bytes);

        QVERIFY(isUnusable([&] { add(Database::open(file.path())); }));
        QVERIFY(bytesOf(file.path()) == bytes);
    }

    void refusedWithJournal_data()
    {
        const QByteArray newer = "PRAGMA user_version = 2;";
        // What was stored before, what the interrupted program was writing, and the message.
        addRows<QByteArray, QByteArray, bool, QString>({
            {"newer version, journal", newer, manyUtensils, false, u"newer version"_s},
            {"newer version, log", newer, manyUtensils, true, u"newer version"_s},
            {"newer version in the log", {}, newer, true, u"newer version"_s},
            {"table missing in the log", {}, "DROP TABLE Utensils", true, u"Utensils is missing"_s},
        });
    }

    void refusedWithJournal()
    {
        const auto [stored, interrupted, isInLog, message] =
            fetchRow<QByteArray, QByteArray, bool, QString>();
        const TestDatabase file;
        file.write(QString::fromLatin1(stored));
        interruptWrite(file, interrupted, isInLog);
        const QByteArrayList before = allBytes(file);
        const QString failure = failureOf([&] { Database::open(file.path()); });
        QVERIFY2(failure.contains(message), qUtf8Printable(failure));
        QVERIFY(allBytes(file) == before);
    }

    // The newest rows are moved into the file, so that a copy of it alone has them.
    void leavesWriteAheadMode()
    {
        const TestDatabase file;
        interruptWrite(file, manyUtensils, true);
        const auto database = Database::open(file.path());
        RecordCursor cursor(database, utensils);
        QCOMPARE(cursor.RecordCount(), 40);
        QCOMPARE(bytesOf(file.path()).mid(18, 2), QByteArray("\1\1"));
        QVERIFY(!QFile::exists(file.path() + u"-wal"_s));
        QCOMPARE(database->connection().execAndGet("PRAGMA synchronous").getInt(), 3); // EXTRA
    }

    void missingRight_data()
    {
        const QString reading = u"cannot be read, because you are not allowed to read and write "_s;
        const QString writing = u"Nothing can be stored in the recipe database"_s;
        // Whether the newest rows are in a log, what is read-only or closed, and the message, which
        // is followed by that.
        addRows<bool, QString, int, QString>({
            {"journal, file", false, u"/data.rbk"_s, 0x4444, reading},
            {"journal, folder", false, {}, 0x5555, reading},
            {"journal, itself", false, u"/data.rbk-journal"_s, 0, reading},
            {"log, folder", true, {}, 0x5555, reading},
            {"log, itself", true, u"/data.rbk-wal"_s, 0, reading},
            {"log, itself read-only", true, u"/data.rbk-wal"_s, 0x4444, writing},
            {"folder closed", true, {}, 0, u"You are not allowed to open the folder"_s},
        });
    }

    // The file is opened through a link, and what is missing is where the link leads.
    void missingRight()
    {
        const auto [isInLog, part, permissions, message] = fetchRow<bool, QString, int, QString>();
        const TestDatabase file;
        const QTemporaryDir links;
        const QString link = links.filePath(u"data.rbk"_s);
        QFile::link(file.path(), link);
        interruptWrite(file, manyUtensils, isInLog);
        constexpr QFileDevice::Permissions all{0x7777};
        for (const QString &folder : {file.folder(), links.path()})
            QFile::setPermissions(folder, all);
        for (const QFileInfo &entry : QDir(file.folder()).entryInfoList(QDir::Files))
            QFile::setPermissions(entry.filePath(), all);
        QFile::setPermissions(file.folder() + part, QFileDevice::Permissions(permissions));
        QString failure;
        asNobody([&] { failure = failureOf([&] { add(Database::open(link)); }); });
        QFile::setPermissions(file.folder(), all);
        QVERIFY2(failure.contains(message) && failure.contains(file.folder() + part),
                 qUtf8Printable(failure));
    }

    void followsLinks()
    {
        const TestDatabase file;
        const QTemporaryDir links;
        const QString link = links.filePath(u"data.rbk"_s);
        QFile::link(file.path(), link);
        QCOMPARE(Database::open(link), Database::open(file.path()));
        QFile::remove(file.path());
        const QString failure = failureOf([&] { Database::open(link); });
        QVERIFY(failure.contains(file.path() + u" is missing"_s));
    }
};

QTEST_GUILESS_MAIN(tst_Damage)
#include "tst_damage.moc"
