#include "data/DataSource.h"
#include "data/Transaction.h"
#include "support/FileBytes.h"
#include "support/RecipeFile.h"

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
        return failure.contains(complaint) && failure.contains(m_path);
    }

private:
    const QString m_path;
    DataSources m_sources;
    DataSource m_source{m_sources};
};

} // namespace

class TestDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatIsWrongWithAFile()
    {
        const QByteArray access("\0\1\0\0Standard Jet DB\0", 20);
        const QByteArray text = QByteArray("Soup\r\n").repeated(500);
        const std::pair<QString, std::function<void(const RecipeFile &)>> table[] = {
            {u"is missing. Put your copy"_s, [](auto &file) { QFile::remove(file.path()); }},
            {u"is a folder"_s,
             [](auto &file) { QVERIFY(QFile::remove(file.path()) && QDir().mkpath(file.path())); }},
            {u"may not be read. Give yourself the right"_s,
             [](auto &file) { QFile::setPermissions(file.path(), {}); }},
            {u"is empty. Put your last copy"_s, [](auto &file) { setBytes(file.path(), {}); }},
            {u"Access format"_s,
             [&](auto &file) { setBytes(file.path(), access.leftJustified(4096, '\1')); }},
            {u"is not a recipe file. Put your copy"_s,
             [&](auto &file) { setBytes(file.path(), text); }},
            {u"is damaged"_s, [](auto &file) { QFile::resize(file.path(), 4096 * 7 - 2048); }},
            {u"the table RecipeUtensils is missing"_s,
             [](auto &file) { file.write(u"DROP TABLE RecipeUtensils"_s); }},
            {u"made by a newer version"_s,
             [](auto &file) { file.write(u"PRAGMA user_version = 2"_s); }},
        };
        for (const auto &[complaint, spoil] : table) {
            const RecipeFile file;
            const QByteArray good = bytesOf(file.path());
            QFile::setPermissions(file.folder(), mayWrite);
            spoil(file);
            const QByteArray before = bytesOf(file.path());

            Utensils utensils(file);
            asNobody([&, text = complaint] {
                QVERIFY(utensils.complains(text, [&] { utensils.count(); }));
            });
            QCOMPARE(bytesOf(file.path()), before);

            // With a good file in its place the same window works.
            QDir(file.path()).removeRecursively();
            QFile::remove(file.path());
            setBytes(file.path(), good);
            utensils.add();
            QCOMPARE(utensils.count(), 1);
        }
    }

    void meetsDamageInTheMiddle()
    {
        const RecipeFile file;
        file.write(u"INSERT INTO Utensils (UtensilName) VALUES (hex(zeroblob(30000)))"_s);
        const QByteArray page = "SELECT rootpage - 1 FROM sqlite_schema WHERE name = 'Utensils'";
        const int at = file.stored(page).toInt() * 4096;
        setBytes(file.path(), bytesOf(file.path()).replace(at, 4096, QByteArray(4096, 'U')));
        Utensils utensils(file);
        QVERIFY(utensils.complains(u"is damaged"_s, [&] { utensils.count(); }));
    }

    void readsWhatItMayNotWrite()
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
            });
            QCOMPARE(bytesOf(file.path()), before);
            QFile::setPermissions(file.folder(), mayWrite);
        }
    }

    void noticesThatTheFileIsAnother()
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
            QCOMPARE(bytesOf(file.path()), other);
        }
    }

    void survivesAFullDisk()
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

    void waitsForAnotherProgramButNotForEver()
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
        utensils.add();
        program.join();
        QCOMPARE(other.execAndGet("SELECT count(*) FROM Utensils").getInt(), 2);
    }
};

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_database.moc"
