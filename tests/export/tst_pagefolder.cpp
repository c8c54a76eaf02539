#include "ExportStand.h"
#include "FolderExchange.h"

#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

// The swap of the folders, whatever comes in its way.
class TestPageFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void leavesTheOldPagesWhereItFails();
    void touchesNothingOfOthers();
    void clearsUpAfterAKilledExport();
    void exchangesInSteps();
};

namespace {

const QStringList madePages{u"index.html"_s, u"pantrywise-files.txt"_s, u"soup.html"_s,
                            u"style.css"_s, u"type_misc.html"_s};

// Writing beyond that size fails, as on a full disk, and for root too.
void limitFiles(rlim_t size)
{
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(size, limit.rlim_max);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

} // namespace

void TestPageFolder::initTestCase()
{
    std::signal(SIGXFSZ, SIG_IGN);
}

void TestPageFolder::leavesTheOldPagesWhereItFails()
{
    ExportStand stand;
    stand.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Soup')"_s);
    stand.run();
    const QByteArray before = bytesOf(stand.page(u"soup.html"_s));
    stand.file.write(u"UPDATE Recipes SET Author = 'Ann', Instructions = "
                     "hex(zeroblob(100000))"_s);
    const auto isAsBefore = [&] {
        return stand.entries() == QStringList{u"Pantrywise"_s}
        && stand.entries(u"Pantrywise"_s) == madePages
            && bytesOf(stand.page(u"soup.html"_s)) == before;
    };
    for (const rlim_t size : {10, 1000, 100'000}) { // the list, the style, the recipe
        limitFiles(size);
        const QString told = stand.failure();
        limitFiles(RLIM_INFINITY);
        QVERIFY2(told.contains(stand.page({}).chopped(1) + u": File too large"_s),
                 qPrintable(told));
        QVERIFY(isAsBefore());
    }
    stand.progress.stopAt = 1;
    QVERIFY(!stand.run());
    QVERIFY(isAsBefore());

    stand.progress.stopAt = -1;
    stand.progress.during = [&] { setBytes(stand.page(u"shopping.txt"_s), "eggs"); };
    QVERIFY(stand.failure().contains(u"holds shopping.txt"_s));
    QCOMPARE(bytesOf(stand.page(u"shopping.txt"_s)), "eggs");
    QVERIFY(QFile::remove(stand.page(u"shopping.txt"_s)) && isAsBefore());
}

void TestPageFolder::touchesNothingOfOthers()
{
    const struct {
        QString name; // of a file in the place
        QByteArray bytes;
        QString told;
    } table[] = {
        {u"Pantrywise"_s, "a file", u"was not made by an export"_s},
        {u"Pantrywise/photo.jpg"_s, "", u"was not made by an export"_s},
        {u"Pantrywise/pantrywise-files.txt"_s, "mine\nindex.html\n", u"not made by an export"_s},
        {u"Pantrywise/.hidden"_s, "", u"not made by an export"_s},
    };
    for (const auto &[name, bytes, told] : table) {
        ExportStand stand;
        setBytes(stand.place.filePath(name), bytes);
        const QString failure = stand.failure();
        QVERIFY2(failure.contains(told) && failure.contains(stand.page({}).chopped(1)),
                 qPrintable(name));
        QCOMPARE(bytesOf(stand.place.filePath(name)), bytes);
        QCOMPARE(stand.entries().size(), 1);
    }
    ExportStand stand;
    const auto lies = [&stand](const QString &name) {
        return stand.failure().contains(u"holds %1,"_s.arg(name));
    };
    stand.run();
    setBytes(stand.page(u".a/b.txt"_s), "");
    QVERIFY(lies(u".a"_s));
    QVERIFY(QDir(stand.page(u".a"_s)).removeRecursively());
    QVERIFY(QFile::remove(stand.page(u"style.css"_s)) && QDir().mkdir(stand.page(u"style.css"_s)));
    QVERIFY(lies(u"style.css"_s));
    const QString elsewhere = stand.place.filePath(u"elsewhere"_s);
    QVERIFY(QDir().rename(stand.page({}), elsewhere));
    QVERIFY(QFile::link(elsewhere, stand.page({}).chopped(1)));
    QVERIFY(stand.failure().contains(u"was not made by an export"_s));
}

// What an export has begun and not finished goes with the next one; anything else stays.
void TestPageFolder::clearsUpAfterAKilledExport()
{
    ExportStand stand;
    stand.run();
    const QString left = stand.place.filePath(u"Pantrywise.new"_s);
    QVERIFY(QDir().rename(stand.page({}), left));
    QVERIFY(QFile::remove(left + "/style.css"_L1));
    QFile list(left + "/pantrywise-files.txt"_L1);
    QVERIFY(list.open(QIODevice::Append) && list.write("../precious.txt\n") > 0);
    list.close();
    setBytes(stand.place.filePath(u"precious.txt"_s), "mine");
    setBytes(stand.place.filePath(u"Pantrywise.new+/mine.txt"_s), "mine");
    stand.run();
    QCOMPARE(stand.entries(),
             QStringList({u"Pantrywise"_s, u"Pantrywise.new+"_s, u"precious.txt"_s}));
}

void TestPageFolder::exchangesInSteps()
{
    QTemporaryDir place;
    const auto path = [&place](const char *name) {
        return std::filesystem::path(place.path().toStdString()) / name;
    };
    setBytes(place.filePath(u"a/a.txt"_s), "a");
    setBytes(place.filePath(u"b/b.txt"_s), "b");
    QVERIFY(!platform::exchangeFoldersInSteps(path("a"), path("b")));
    QCOMPARE(bytesOf(place.filePath(u"a/b.txt"_s)), "b");
    QCOMPARE(bytesOf(place.filePath(u"b/a.txt"_s)), "a");
    QVERIFY(platform::exchangeFoldersInSteps(path("none"), path("b")));
    QCOMPARE(bytesOf(place.filePath(u"b/a.txt"_s)), "a");
    QVERIFY(!platform::exchangeFoldersInSteps(path("a"), path("c")));
    QCOMPARE(QDir(place.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
             QStringList({u"b"_s, u"c"_s}));
}

QTEST_GUILESS_MAIN(TestPageFolder)
#include "tst_pagefolder.moc"
