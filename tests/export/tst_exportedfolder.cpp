#include "export/ExportError.h"
#include "export/ExportFixture.h"
#include "platform/DirectoryExchange.h"
#include "support/Rows.h"

#include <csignal>
#include <sys/resource.h>

namespace {

// Writing beyond that size fails, as on a full disk, for root too.
void limitFiles(rlim_t size)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(size, limit.rlim_max);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

// The pages of one recipe, exported earlier.
struct OldPages : ExportFixture {
    OldPages()
    {
        file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Soup')"_s);
        QCOMPARE(run(), QString());
        soup = bytesOf(page(u"soup.html"_s));
    }

    bool areKept() const
    {
        return entries() == QStringList{u"Pantrywise"_s} && pages().size() == 5
            && bytesOf(page(u"soup.html"_s)) == soup;
    }

    QByteArray soup;
};

} // namespace

// New pages replace the old ones completely or not at all.
class tst_ExportedFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failedWriting_data()
    {
        addRows<rlim_t>(
            {{"of the list", 10}, {"of the style sheet", 1000}, {"of a recipe", 100'000}});
    }

    void failedWriting()
    {
        const auto [size] = fetchRow<rlim_t>();
        OldPages old;
        old.file.write(u"UPDATE Recipes SET Instructions = hex(zeroblob(100000))"_s);
        limitFiles(size);
        const QString message = old.run();
        limitFiles(RLIM_INFINITY);
        QVERIFY2(message.contains(old.path(u"Pantrywise: File too large"_s)), qPrintable(message));
        QVERIFY(old.areKept());
    }

    void stopped()
    {
        OldPages old;
        old.progress.stopAt = 1;
        QCOMPARE(old.run(), QString());
        QVERIFY(old.areKept());
    }

    void otherFileAddedWhileExporting()
    {
        OldPages old;
        old.progress.onProgress = [&] { setBytes(old.page(u"shopping.txt"_s), "eggs"); };
        QVERIFY(old.run().contains(u"contains shopping.txt,"_s));
        QVERIFY(QFile::remove(old.page(u"shopping.txt"_s)));
        QVERIFY(old.areKept());
    }

    void twoExportsAtOnce()
    {
        OldPages old;
        old.progress.onProgress = [&] {
            RecordingProgress progress;
            QVERIFY_THROWS_EXCEPTION(
                ExportError,
                exportPages(old.file.path(), old.folder.path(), old.settings, progress));
        };
        QCOMPARE(old.run(), QString());
    }

    void foreignEntries_data()
    {
        addRows<QString, QByteArray>(
            {{"file with the folder's name", u"Pantrywise"_s, "a file"},
             {"hidden file", u"Pantrywise/.hidden"_s, "x"},
             {"another list", u"Pantrywise/pantrywise-files.txt"_s, "mine\nindex.html"}});
    }

    void foreignEntries()
    {
        const auto [name, bytes] = fetchRow<QString, QByteArray>();
        ExportFixture fixture;
        setBytes(fixture.path(name), bytes);
        QVERIFY(fixture.run().startsWith(fixture.path(u"Pantrywise was not made by an export"_s)));
        QCOMPARE(bytesOf(fixture.path(name)), bytes);
        QCOMPARE(fixture.entries().size(), 1);
    }

    void folderInPlaceOfAPage()
    {
        OldPages old;
        QVERIFY(QFile::remove(old.page(u"style.css"_s)));
        setBytes(old.page(u"style.css/mine.txt"_s), "");
        QVERIFY(old.run().contains(u"contains style.css,"_s));
        QVERIFY(QFile::exists(old.page(u"style.css/mine.txt"_s)));
    }

    void linkToAFolderOfPages()
    {
        OldPages old;
        QVERIFY(QDir().rename(old.page({}), old.path(u"elsewhere"_s)));
        QVERIFY(QFile::link(u"elsewhere"_s, old.path(u"Pantrywise"_s)));
        QVERIFY(old.run().contains(u"was not made by an export"_s));
        QVERIFY(QFile::exists(old.path(u"elsewhere/soup.html"_s)));
    }

    // The pages of deleted recipes, and what a killed export has left.
    void removesOldFiles()
    {
        ExportFixture fixture;
        QCOMPARE(fixture.run(), QString());
        const QString staging = fixture.path(u"Pantrywise.new"_s);
        QVERIFY(QDir().rename(fixture.page({}), staging));
        QVERIFY(QFile::remove(staging + "/style.css"_L1));
        QFile list(staging + "/pantrywise-files.txt"_L1);
        QVERIFY(list.open(QIODevice::Append) && list.write("../precious.txt\n") > 0);
        list.close();
        setBytes(fixture.path(u"precious.txt"_s), "mine");
        setBytes(fixture.path(u"Pantrywise.new+/mine.txt"_s), "mine");
        fixture.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Old')"_s);
        QCOMPARE(fixture.run(), QString());
        fixture.file.write(u"UPDATE Recipes SET RecipeName = 'New'"_s);
        QCOMPARE(fixture.run(fixture.page({})), QString()); // into the folder itself
        QCOMPARE(fixture.pages().join(u' '),
                 u"index.html new.html pantrywise-files.txt style.css type_misc.html"_s);
        QCOMPARE(fixture.entries().join(u' '), u"Pantrywise Pantrywise.new+ precious.txt"_s);
    }

    // As on file systems that cannot exchange directories in one step.
    void exchangesInSteps()
    {
        QTemporaryDir folder;
        const auto exchange = [&folder](const char *name, const char *with) {
            const std::filesystem::path path = folder.path().toStdString();
            return !platform::exchangeDirectoriesInSteps(path / name, path / with);
        };
        setBytes(folder.filePath(u"a/a.txt"_s), "a");
        setBytes(folder.filePath(u"b/b.txt"_s), "b");
        QVERIFY(exchange("a", "b") && exchange("b", "c") && !exchange("none", "a"));
        QCOMPARE(bytesOf(folder.filePath(u"a/b.txt"_s)), "b");
        QCOMPARE(bytesOf(folder.filePath(u"c/a.txt"_s)), "a");
        QCOMPARE(QDir(folder.path()).count(), 4U); // with . and ..
    }
};

QTEST_GUILESS_MAIN(tst_ExportedFolder)
#include "tst_exportedfolder.moc"
