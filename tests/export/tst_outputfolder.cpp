#include "export/ExportError.h"
#include "platform/DirectoryExchange.h"
#include "support/ExportFixture.h"

#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

// The new pages take the place of the old ones whole or not at all, and of nothing else.
class TestPageFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesTheOldPagesWhereItFails();
    void touchesNothingOfOthers();
    void clearsUp();
    void exchangesInSteps();
};

// Writing beyond that size fails, as on a full disk, and for root too.
static void limitFiles(rlim_t size)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(size, limit.rlim_max);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

void TestPageFolder::leavesTheOldPagesWhereItFails()
{
    ExportFixture stand;
    stand.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Soup')"_s);
    QCOMPARE(stand.run(), QString());
    const QByteArray before = bytesOf(stand.page(u"soup.html"_s));
    stand.file.write(u"UPDATE Recipes SET Instructions = hex(zeroblob(100000))"_s);
    const auto isAsBefore = [&] {
        return stand.entries() == QStringList{u"Pantrywise"_s} && stand.pages().size() == 5
            && bytesOf(stand.page(u"soup.html"_s)) == before;
    };
    for (const rlim_t size : {10U, 1000U, 100'000U}) { // the list, the style, the recipe
        limitFiles(size);
        const QString told = stand.run();
        limitFiles(RLIM_INFINITY);
        QVERIFY2(told.contains(stand.path(u"Pantrywise: File too large"_s)), qPrintable(told));
        QVERIFY(isAsBefore());
    }
    stand.progress.stopAt = 1;
    QCOMPARE(stand.run(), QString());
    QVERIFY(isAsBefore());
    stand.progress.stopAt = -1;
    stand.progress.onProgress = [&] { setBytes(stand.page(u"shopping.txt"_s), "eggs"); };
    QVERIFY(stand.run().contains(u"holds shopping.txt,"_s));
    QVERIFY(QFile::remove(stand.page(u"shopping.txt"_s)) && isAsBefore());
    stand.progress.onProgress = [&] { // another export into the same place
        NotingProgress other;
        QVERIFY_THROWS_EXCEPTION(
            ExportError, exportPages(stand.file.path(), stand.place.path(), stand.settings, other));
    };
    QCOMPARE(stand.run(), QString());
}

void TestPageFolder::touchesNothingOfOthers()
{
    for (const auto &[name, bytes] : {std::pair(u"Pantrywise"_s, "a file"),
                                      {u"Pantrywise/.hidden"_s, "x"},
                                      {u"Pantrywise/pantrywise-files.txt"_s, "mine\nindex.html"}}) {
        ExportFixture stand;
        setBytes(stand.path(name), bytes);
        QVERIFY(stand.run().startsWith(stand.path(u"Pantrywise was not made by an export"_s)));
        QCOMPARE(bytesOf(stand.path(name)), bytes);
        QCOMPARE(stand.entries().size(), 1);
    }
    ExportFixture stand;
    QCOMPARE(stand.run(), QString());
    QVERIFY(QFile::remove(stand.page(u"style.css"_s)));
    setBytes(stand.page(u"style.css/mine.txt"_s), "");
    QVERIFY(stand.run().contains(u"holds style.css,"_s));
    QVERIFY(QDir().rename(stand.page({}), stand.path(u"elsewhere"_s)));
    QVERIFY(QFile::link(u"elsewhere"_s, stand.path(u"Pantrywise"_s)));
    QVERIFY(stand.run().contains(u"was not made by an export"_s));
}

// What is gone from the recipes goes from the pages, and what a killed export has left, too.
void TestPageFolder::clearsUp()
{
    ExportFixture stand;
    QCOMPARE(stand.run(), QString());
    const QString left = stand.path(u"Pantrywise.new"_s);
    QVERIFY(QDir().rename(stand.page({}), left));
    QVERIFY(QFile::remove(left + "/style.css"_L1));
    QFile list(left + "/pantrywise-files.txt"_L1);
    QVERIFY(list.open(QIODevice::Append) && list.write("../precious.txt\n") > 0);
    list.close();
    setBytes(stand.path(u"precious.txt"_s), "mine");
    setBytes(stand.path(u"Pantrywise.new+/mine.txt"_s), "mine");
    stand.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Old')"_s);
    QCOMPARE(stand.run(), QString());
    stand.file.write(u"UPDATE Recipes SET RecipeName = 'New'"_s);
    stand.progress.names.clear();
    exportPages(stand.file.path(), stand.page({}), {}, stand.progress); // into the folder itself
    QCOMPARE(stand.pages(),
             QStringList({u"index.html"_s, u"new.html"_s, u"pantrywise-files.txt"_s, u"style.css"_s,
                          u"type_misc.html"_s}));
    QCOMPARE(stand.entries(),
             QStringList({u"Pantrywise"_s, u"Pantrywise.new+"_s, u"precious.txt"_s}));
}

// On file systems that cannot do it in one.
void TestPageFolder::exchangesInSteps()
{
    QTemporaryDir place;
    const auto exchange = [&place](const char *folder, const char *with) {
        const std::filesystem::path path = place.path().toStdString();
        return !platform::exchangeDirectoriesInSteps(path / folder, path / with);
    };
    setBytes(place.filePath(u"a/a.txt"_s), "a");
    setBytes(place.filePath(u"b/b.txt"_s), "b");
    QVERIFY(exchange("a", "b") && exchange("b", "c") && !exchange("none", "a"));
    QCOMPARE(bytesOf(place.filePath(u"a/b.txt"_s)), "b");
    QCOMPARE(bytesOf(place.filePath(u"c/a.txt"_s)), "a");
    QCOMPARE(QDir(place.path()).count(), 4U); // with . and ..
}

QTEST_GUILESS_MAIN(TestPageFolder)
#include "tst_outputfolder.moc"
