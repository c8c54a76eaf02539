#include "DataSource.h"
#include "RecipeFile.h"
#include "Transaction.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QFileDevice::Permissions mayRead = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther
    | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
constexpr QFileDevice::Permissions mayWrite =
    mayRead | QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void setBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

// Rights mean nothing to root: for its life the program is somebody without any.
class AsNobody
{
public:
    AsNobody() { become(nobody); }
    ~AsNobody() { become(0); }

private:
    static constexpr uid_t nobody = 65534;

    void become(uid_t user) const
    {
        if (m_isRoot && setresuid(user, user, 0) != 0)
            qFatal("cannot change the user");
    }

    const bool m_isRoot = getuid() == 0;

    Q_DISABLE_COPY_MOVE(AsNobody)
};

// For its life no file can grow beyond a size.
class SmallDisk
{
public:
    explicit SmallDisk(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small{size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};

    Q_DISABLE_COPY_MOVE(SmallDisk)
};

// One window's data source over the utensils.
class Utensils
{
public:
    explicit Utensils(const RecipeFile &file)
    {
        m_source.DatabaseName = file.path();
        m_source.RecordSource = u"Utensils"_s;
    }

    Database &database() { return m_source.Database(); }
    qsizetype count() { return m_source.Recordset().RecordCount(); }

    void add(const QString &name = u"Pan"_s)
    {
        m_source.Recordset().AddNew();
        m_source.Recordset().setValue("UtensilName"_L1, name);
        m_source.Recordset().Update();
    }

private:
    DataSource m_source;
};

} // namespace

class TestDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatIsWrongWithAFile_data();
    void saysWhatIsWrongWithAFile();
    void meetsDamageInTheMiddle();
    void readsWhatItMayNotWrite_data();
    void readsWhatItMayNotWrite();
    void noticesThatTheFileIsAnother_data();
    void noticesThatTheFileIsAnother();
    void survivesAFullDisk_data();
    void survivesAFullDisk();
    void takesTurnsWithAnotherProgram();
    void givesUpOnALockedFile();
    void sharesOneConnection();
};

using Spoil = std::function<void(const QString &path)>;

void TestDatabase::saysWhatIsWrongWithAFile_data()
{
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<QString>("complaint");

    const auto row = [](const char *name, const Spoil &spoil, const QString &complaint) {
        QTest::newRow(name) << spoil << complaint;
    };
    const auto bytes = [row](const char *name, const QByteArray &content,
                             const QString &complaint) {
        row(
            name, [content](const QString &path) { setBytes(path, content); }, complaint);
    };
    const auto sql = [row](const char *name, const char *statement, const QString &complaint) {
        const auto run = [statement](const QString &path) {
            SQLite::Database(path.toStdString(), SQLite::OPEN_READWRITE).exec(statement);
        };
        row(name, run, complaint);
    };
    const auto cut = [row](const char *name, qint64 size) {
        row(
            name, [size](const QString &path) { QFile::resize(path, size); }, u"is damaged"_s);
    };
    row(
        "missing", [](const QString &path) { QFile::remove(path); },
        u"is missing. Put your copy"_s);
    row(
        "a folder",
        [](const QString &path) {
            QFile::remove(path);
            QDir().mkpath(path);
        },
        u"is a folder"_s);
    row(
        "no right", [](const QString &path) { QFile::setPermissions(path, {}); },
        u"may not be read. Give yourself the right"_s);
    bytes("zero bytes", {}, u"is empty. Put your last copy"_s);
    bytes("Access format", QByteArray("\0\1\0\0Standard Jet DB\0", 20).leftJustified(4096, '\1'),
          u"Access format"_s);
    bytes("a text", QByteArray("Soup\r\n").repeated(500), u"is not a recipe file. Put your copy"_s);
    cut("start of a header", 90);
    cut("one page", 4096);
    cut("half a page less", 4096 * 7 - 2048);
    sql("another program's",
        "PRAGMA writable_schema = 1; DELETE FROM sqlite_schema;"
        "PRAGMA writable_schema = RESET; CREATE TABLE Songs (Title); VACUUM",
        u"is not a recipe file: the table Recipes is missing"_s);
    sql("missing table", "DROP TABLE RecipeUtensils", u"the table RecipeUtensils is missing"_s);
    sql("missing field", "ALTER TABLE Ingredients DROP COLUMN ShelfLife",
        u"the field ShelfLife is missing"_s);
    sql("newer", "PRAGMA user_version = 2", u"made by a newer version"_s);
}

void TestDatabase::saysWhatIsWrongWithAFile()
{
    QFETCH(const Spoil, spoil);
    QFETCH(const QString, complaint);
    const RecipeFile file;
    const QByteArray good = bytesOf(file.path());
    QFile::setPermissions(file.folder(), mayWrite);
    spoil(file.path());
    const QByteArray before = bytesOf(file.path());
    const bool wasFile = QFileInfo(file.path()).isFile();

    Utensils utensils(file);
    {
        const AsNobody nobody;
        const QString failure = failureOf([&] { utensils.count(); });
        QVERIFY2(failure.contains(complaint) && failure.contains(file.path()),
                 qUtf8Printable(failure));
    }
    QCOMPARE(bytesOf(file.path()), before);
    QCOMPARE(QDir(file.folder()).entryList(QDir::Files).size(), wasFile ? 1 : 0);

    // With a good file in its place the same window works.
    QDir(file.path()).removeRecursively();
    QFile::remove(file.path());
    setBytes(file.path(), good);
    utensils.add();
    QCOMPARE(utensils.count(), 1);
}

void TestDatabase::meetsDamageInTheMiddle()
{
    const RecipeFile file;
    file.write(u"INSERT INTO Utensils (UtensilName) VALUES (hex(zeroblob(30000)))"_s);
    QByteArray bytes = bytesOf(file.path());
    const qsizetype root =
        file.other()
            .execAndGet("SELECT rootpage FROM sqlite_schema WHERE name = 'Utensils'")
            .getInt();
    bytes.replace((root - 1) * 4096, 4096, QByteArray(4096, '\x55'));
    setBytes(file.path(), bytes);

    Utensils utensils(file);
    QVERIFY(failureOf([&] { utensils.count(); }).contains(u"is damaged"_s));
    QVERIFY(failureOf([&] { utensils.add(); }).contains(u"is damaged"_s));
    QCOMPARE(bytesOf(file.path()), bytes);
}

void TestDatabase::readsWhatItMayNotWrite_data()
{
    QTest::addColumn<bool>("folderIsWritable");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("file") << true << u"since it is read-only"_s;
    QTest::newRow("folder") << false << u"since its folder is read-only"_s;
}

void TestDatabase::readsWhatItMayNotWrite()
{
    QFETCH(const bool, folderIsWritable);
    QFETCH(const QString, complaint);
    const RecipeFile file;
    file.write(u"INSERT INTO Utensils (UtensilName) VALUES ('Pot')"_s);
    const QByteArray before = bytesOf(file.path());
    QFile::setPermissions(file.path(), folderIsWritable ? mayRead : mayWrite);
    QFile::setPermissions(file.folder(), folderIsWritable ? mayWrite : mayRead);
    {
        const AsNobody nobody;
        Utensils utensils(file);
        QCOMPARE(utensils.count(), 1);
        const QString failure = failureOf([&] { utensils.add(); });
        QVERIFY2(failure.contains(complaint) && failure.contains(file.path()),
                 qUtf8Printable(failure));
        {
            Transaction transaction(utensils.database());
            QVERIFY(failureOf([&] { utensils.add(); }).contains(complaint));
            QVERIFY(failureOf([&] { transaction.commit(); }).contains(complaint));
        }
        QCOMPARE(utensils.count(), 1);
    }
    QCOMPARE(bytesOf(file.path()), before);
    QFile::setPermissions(file.path(), mayWrite);
    QFile::setPermissions(file.folder(), mayWrite);
}

void TestDatabase::noticesThatTheFileIsAnother_data()
{
    QTest::addColumn<bool>("isReplaced");
    QTest::newRow("deleted") << false;
    QTest::newRow("replaced") << true;
}

void TestDatabase::noticesThatTheFileIsAnother()
{
    QFETCH(const bool, isReplaced);
    const RecipeFile file;
    const QByteArray other = bytesOf(file.path());
    file.write(u"INSERT INTO Utensils (UtensilName) VALUES ('Pot')"_s);
    Utensils utensils(file);
    QCOMPARE(utensils.count(), 1);
    QFile::remove(file.path());
    if (isReplaced)
        setBytes(file.path(), other);

    QVERIFY(failureOf([&] { utensils.add(); }).contains(u"was moved or replaced"_s));
    QCOMPARE(utensils.count(), 1);
    QCOMPARE(bytesOf(file.path()), isReplaced ? other : QByteArray());
}

void TestDatabase::survivesAFullDisk_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("at the commit") << u"x"_s.repeated(200'000);
    QTest::newRow("before it") << u"x"_s.repeated(40'000'000);
}

void TestDatabase::survivesAFullDisk()
{
    QFETCH(const QString, name);
    const RecipeFile file;
    const QByteArray before = bytesOf(file.path());
    Utensils utensils(file);
    {
        const SmallDisk small(65536);
        QVERIFY(failureOf([&] { utensils.add(name); }).contains(u"The disk"_s));
        Transaction outer(utensils.database());
        utensils.add();
        {
            const QString failure = failureOf([&] {
                Transaction inner(utensils.database());
                utensils.add(name);
                inner.commit();
            });
            if (failure.isNull())
                QVERIFY(failureOf([&] { outer.commit(); }).contains(u"The disk"_s));
        }
        // The engine has undone everything, and nothing may slip in behind it.
        QVERIFY(!failureOf([&] { utensils.add(); }).isNull());
        QVERIFY(!failureOf([&] {
                     utensils.database().Execute(u"INSERT INTO Utensils DEFAULT VALUES"_s);
                 }).isNull());
        QVERIFY(!failureOf([&] {
                     Transaction late(utensils.database());
                     late.commit();
                 }).isNull());
        QVERIFY(!failureOf([&] { outer.commit(); }).isNull());
    }
    QCOMPARE(utensils.count(), 0);
    QCOMPARE(bytesOf(file.path()), before);

    Transaction transaction(utensils.database());
    utensils.add();
    transaction.commit();
    QCOMPARE(file.other().execAndGet("SELECT count(*) FROM Utensils").getInt(), 1);
}

void TestDatabase::takesTurnsWithAnotherProgram()
{
    const RecipeFile file;
    Utensils utensils(file);
    SQLite::Database other = file.other();
    other.exec("BEGIN EXCLUSIVE; INSERT INTO Utensils DEFAULT VALUES");
    QElapsedTimer time;
    time.start();
    std::thread program([&other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        other.exec("COMMIT");
    });
    Transaction transaction(utensils.database());
    utensils.add();
    transaction.commit();
    program.join();
    QVERIFY(time.elapsed() >= 90 && time.elapsed() < 5000);
    QCOMPARE(other.execAndGet("SELECT count(*) FROM Utensils").getInt(), 2);
}

void TestDatabase::givesUpOnALockedFile()
{
    const RecipeFile file;
    SQLite::Database other = file.other();
    other.exec("BEGIN EXCLUSIVE");
    Utensils utensils(file);
    QElapsedTimer time;
    time.start();
    const QString failure = failureOf([&] { utensils.count(); });
    QVERIFY2(failure.contains(u"is in use by another program"_s) && failure.contains(file.path()),
             qUtf8Printable(failure));
    QVERIFY(time.elapsed() >= 10'000 && time.elapsed() < 15'000);
    other.exec("COMMIT");
    QCOMPARE(utensils.count(), 0);
}

void TestDatabase::sharesOneConnection()
{
    const RecipeFile file;
    const auto database = Database::open(file.path());
    QCOMPARE(Database::open(file.folder() + u"/./data.rbk"_s), database);
    const RecipeFile another;
    QVERIFY(Database::open(another.path()) != database);
}

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_database.moc"
