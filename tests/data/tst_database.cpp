#include "DataSource.h"
#include "FileBytes.h"
#include "RecipeFile.h"
#include "Transaction.h"

#include <QElapsedTimer>

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QFileDevice::Permissions mayRead{0x5555};
constexpr QFileDevice::Permissions mayWrite{0x7777};

void run(const QString &path, const char *statements)
{
    SQLite::Database(path.toStdString(), SQLite::OPEN_READWRITE).exec(statements);
}

// Rights mean nothing to root: does something as somebody without any.
template <typename Action>
void asNobody(Action action)
{
    const uid_t nobody = getuid() == 0 ? 65534 : getuid();
    const uid_t me = getuid();
    QCOMPARE(setresuid(nobody, nobody, me), 0);
    action();
    QCOMPARE(setresuid(me, me, me), 0);
}

// One window's data source over the utensils.
class Utensils
{
public:
    explicit Utensils(const RecipeFile &file)
        : m_path(file.path())
    {
        m_source.DatabaseName = m_path;
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

    // Whether the action fails with a text that says so and names the file.
    template <typename Action>
    bool complains(const QString &complaint, Action action) const
    {
        const QString failure = failureOf(action);
        const bool isRight = failure.contains(complaint) && failure.contains(m_path);
        if (!isRight)
            qWarning("%s", qUtf8Printable(failure));
        return isRight;
    }

private:
    const QString m_path;
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
    void readsWhatItMayNotWrite();
    void noticesThatTheFileIsAnother();
    void survivesAFullDisk();
    void waitsForAnotherProgramButNotForEver();
    void sharesOneConnection();
};

using Spoil = std::function<void(const QString &path)>;

void TestDatabase::saysWhatIsWrongWithAFile_data()
{
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<QString>("complaint");

    const auto row = [](const char *complaint, const Spoil &spoil) {
        QTest::newRow(complaint) << spoil << QString::fromLatin1(complaint);
    };
    const auto bytes = [row](const char *complaint, const QByteArray &content) {
        row(complaint, [content](const QString &path) { setBytes(path, content); });
    };
    const auto sql = [row](const char *complaint, const char *statements) {
        row(complaint, [statements](const QString &path) { run(path, statements); });
    };
    row("is missing. Put your copy", [](const QString &path) { QFile::remove(path); });
    row("is a folder",
        [](const QString &path) { QVERIFY(QFile::remove(path) && QDir().mkpath(path)); });
    row("may not be read. Give yourself the right",
        [](const QString &path) { QFile::setPermissions(path, {}); });
    bytes("is empty. Put your last copy", {});
    bytes("Access format", QByteArray("\0\1\0\0Standard Jet DB\0", 20).leftJustified(4096, '\1'));
    bytes("is not a recipe file. Put your copy", QByteArray("Soup\r\n").repeated(500));
    for (const int size : {90, 4096, 4096 * 7 - 2048})
        row("is damaged", [size](const QString &path) { QFile::resize(path, size); });
    sql("is not a recipe file: the table Recipes is missing",
        "PRAGMA writable_schema = 1; DELETE FROM sqlite_schema;"
        "PRAGMA writable_schema = RESET; CREATE TABLE Songs (Title); VACUUM");
    sql("the table RecipeUtensils is missing", "DROP TABLE RecipeUtensils");
    sql("the field ShelfLife is missing", "ALTER TABLE Ingredients DROP COLUMN ShelfLife");
    sql("made by a newer version", "PRAGMA user_version = 2");
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
    const qsizetype files = QFileInfo(file.path()).isFile() ? 1 : 0;

    Utensils utensils(file);
    asNobody([&] { QVERIFY(utensils.complains(complaint, [&] { utensils.count(); })); });
    QCOMPARE(bytesOf(file.path()), before);
    QCOMPARE(QDir(file.folder()).entryList(QDir::Files).size(), files);

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
    const auto root = "SELECT rootpage FROM sqlite_schema WHERE name = 'Utensils'";
    const int page = file.other().execAndGet(root).getInt() - 1;
    const QByteArray bytes =
        bytesOf(file.path()).replace(page * 4096, 4096, QByteArray(4096, '\x55'));
    setBytes(file.path(), bytes);

    Utensils utensils(file);
    QVERIFY(utensils.complains(u"is damaged"_s, [&] { utensils.count(); }));
    QVERIFY(utensils.complains(u"is damaged"_s, [&] { utensils.add(); }));
    QCOMPARE(bytesOf(file.path()), bytes);
}

void TestDatabase::readsWhatItMayNotWrite()
{
    for (const bool isFile : {true, false}) {
        const RecipeFile file;
        const QByteArray before = bytesOf(file.path());
        QFile::setPermissions(file.path(), isFile ? mayRead : mayWrite);
        QFile::setPermissions(file.folder(), isFile ? mayWrite : mayRead);
        const QString complaint =
            isFile ? u"since it is read-only"_s : u"since its folder is read-only"_s;
        asNobody([&] {
            Utensils utensils(file);
            QCOMPARE(utensils.count(), 0);
            QVERIFY(utensils.complains(complaint, [&] { utensils.add(); }));
            Transaction transaction(utensils.database());
            QVERIFY(utensils.complains(complaint, [&] { utensils.add(); }));
            QVERIFY(utensils.complains(complaint, [&] { transaction.commit(); }));
        });
        QCOMPARE(bytesOf(file.path()), before);
        QFile::setPermissions(file.folder(), mayWrite);
    }
}

void TestDatabase::noticesThatTheFileIsAnother()
{
    for (const bool isReplaced : {false, true}) {
        const RecipeFile file;
        const QByteArray other = isReplaced ? bytesOf(file.path()) : QByteArray();
        file.write(u"INSERT INTO Utensils (UtensilName) VALUES ('Pot')"_s);
        Utensils utensils(file);
        QCOMPARE(utensils.count(), 1);
        QFile::remove(file.path());
        if (isReplaced)
            setBytes(file.path(), other);
        QVERIFY(utensils.complains(u"was moved or replaced"_s, [&] { utensils.add(); }));
        QCOMPARE(utensils.count(), 1);
        QCOMPARE(bytesOf(file.path()), other);
    }
}

void TestDatabase::survivesAFullDisk()
{
    for (const int length : {200'000, 40'000'000}) { // met at the commit, or before it
        const QString name(length, u'x');
        const RecipeFile file;
        const QByteArray before = bytesOf(file.path());
        Utensils utensils(file);
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit large{};
        getrlimit(RLIMIT_FSIZE, &large);
        const rlimit small{65536, large.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        const auto restore = qScopeGuard([&] { setrlimit(RLIMIT_FSIZE, &large); });
        QVERIFY(failureOf([&] { utensils.add(name); }).contains(u"The disk"_s));
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
            // The engine has undone everything, and nothing may slip in behind it.
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
}

void TestDatabase::waitsForAnotherProgramButNotForEver()
{
    const RecipeFile file;
    Utensils utensils(file);
    SQLite::Database other = file.other();
    other.exec("BEGIN EXCLUSIVE");
    QElapsedTimer time;
    time.start();
    QVERIFY(utensils.complains(u"is in use by another program"_s, [&] { utensils.count(); }));
    QVERIFY(time.elapsed() >= 10'000 && time.elapsed() < 15'000);

    std::thread program([&other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        other.exec("INSERT INTO Utensils DEFAULT VALUES; COMMIT");
    });
    Transaction transaction(utensils.database());
    utensils.add();
    transaction.commit();
    program.join();
    QCOMPARE(other.execAndGet("SELECT count(*) FROM Utensils").getInt(), 2);
}

void TestDatabase::sharesOneConnection()
{
    const RecipeFile file;
    const auto database = Database::open(file.path());
    QCOMPARE(Database::open(file.folder() + u"/./data.rbk"_s), database);
    QVERIFY(Database::open(RecipeFile().path()) != database);
}

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_database.moc"
