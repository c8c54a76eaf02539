#include "export/ExportError.h"
#include "export/ExportFixture.h"
#include "platform/DirectoryExchange.h"
#include "platform/Paths.h"
#include "support/FileSizeLimit.h"
#include "support/Rows.h"

#include <fstream>

namespace {

constexpr qsizetype pagesOfOne = 7; // number of files of a book with one recipe

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
        return entries() == QStringList{u"Pantrywise"_s} && pages().size() == pagesOfOne
            && bytesOf(page(u"soup.html"_s)) == soup;
    }

    QByteArray soup;
};

qint64 ageOf(const QString &path)
{
    return QFileInfo(path).lastModified().secsTo(QDateTime::currentDateTime());
}

void setAge(const QString &path, int seconds)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds),
                             QFileDevice::FileModificationTime));
}

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
        const QString message = [&old, limit = FileSizeLimit(size)] { return old.run(); }();
        QVERIFY2(message.contains(old.path(u"Pantrywise: File too large"_s)), qPrintable(message));
        QVERIFY(old.areKept());
    }

    void stopped_data()
    {
        addRows<qsizetype>({{"at a recipe", 1}, {"at the main menu", 2}, {"at a list", 3}});
    }

    void stopped()
    {
        OldPages old;
        std::tie(old.progress.stopAt) = fetchRow<qsizetype>();
        old.file.write(u"UPDATE Recipes SET Author = 'Ann'"_s);
        QCOMPARE(old.run(), QString());
        QCOMPARE(old.progress.names.size(), old.progress.stopAt);
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

    // Even if the lock looks abandoned to another computer, which the export prevents.
    void twoExportsAtOnce()
    {
        OldPages old;
        old.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Stew')"_s);
        old.progress.onProgress = [&] {
            RecordingProgress progress;
            QVERIFY_THROWS_EXCEPTION(
                ExportError,
                exportPages(old.file.path(), old.folder.path(), old.settings, progress));
            QCOMPARE(ageOf(old.path(u"Pantrywise.lock"_s)) > 60, false);
            setAge(old.path(u"Pantrywise.lock"_s), 3600);
        };
        QCOMPARE(old.run(), QString());
    }

    void takesOverLocks_data()
    {
        // The contents and the age in seconds.
        addRows<QByteArray, int, bool>(
            {{"empty, recent", {}, 100, false},
             {"empty", {}, 400, true},
             {"of another computer, recent", "7\np\nkitchen\n", 100, false},
             {"of another computer", "7\np\nkitchen\n", 400, true},
             {"no lock", "my notes", 400, false}});
    }

    void takesOverLocks()
    {
        const auto [bytes, age, isTakenOver] = fetchRow<QByteArray, int, bool>();
        ExportFixture fixture;
        const QString lock = fixture.path(u"Pantrywise.lock"_s);
        setBytes(lock, bytes);
        setAge(lock, age);
        QCOMPARE(fixture.run().contains(u"the file %1,"_s.arg(lock)), !isTakenOver);
        QCOMPARE(QFile::exists(lock), !isTakenOver);
        QCOMPARE(bytesOf(lock), isTakenOver ? QByteArray() : bytes);
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

    void otherEntriesAmongThePages_data()
    {
        // Bytes of paths, and what the message says of them; nothing if they go with the old pages.
        addRows<QByteArrayList, QString>(
            {{"of desktops",
              {".DS_Store", "._index.html", "Thumbs.db", "desktop.ini", ".directory"},
              {}},
             {"letter case", {"thumbs.db"}, u"contains thumbs.db, which was"_s},
             {"folder named as a desktop's file",
              {".directory/a"},
              u"contains .directory, which was"_s},
             {"not text", {"caf\xE9"}, u"contains caf\ufffd, which was"_s},
             {"some", {"b", ".DS_Store", "a\n"}, u"contains a\u240a, b, which were"_s},
             {"many",
              {"1", "2", "3", "4", "5", "6", "7"},
              u"contains 1, 2, 3, 4, 5, 6, 7, which"_s}});
    }

    void otherEntriesAmongThePages()
    {
        const auto [names, said] = fetchRow<QByteArrayList, QString>();
        OldPages old;
        for (const QByteArray &name : names) {
            const std::filesystem::path path =
                platform::nativePath(old.page({})) / name.toStdString();
            std::filesystem::create_directories(path.parent_path());
            QVERIFY(std::ofstream(path).good());
        }
        const QString message = old.run();
        QVERIFY2(said.isEmpty() ? message.isEmpty() : message.contains(said), qPrintable(message));
        const auto count = std::distance(
            std::filesystem::directory_iterator(platform::nativePath(old.page({}))), {});
        QCOMPARE(count, said.isEmpty() ? pagesOfOne : pagesOfOne + names.size());
        QCOMPARE(old.entries(), QStringList{u"Pantrywise"_s});
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

    // Folders beside the pages. Only those of interrupted exports go.
    void leftOvers_data()
    {
        addRows<QString, bool, bool>(
            {{"staging", u"Pantrywise.new"_s, true, false},
             {"other staging", u"Pantrywise.new++"_s, true, false},
             {"put aside", u"Pantrywise.new+.old"_s, true, false},
             {"no list", u"Pantrywise.new"_s, false, true},
             {"copy", u"Pantrywise.new backup of 2025"_s, true, true},
             {"longer", u"Pantrywise.new.older"_s, true, true},
             {"letter case", u"pantrywise.new"_s, true, true},
             {"letter case, no list", u"pantrywise.newsletters"_s, false, true}});
    }

    void leftOvers()
    {
        const auto [name, hasList, isKept] = fetchRow<QString, bool, bool>();
        OldPages old;
        QVERIFY(QDir().mkdir(old.path(name)));
        if (hasList) {
            for (const QString &page : {u"pantrywise-files.txt"_s, u"soup.html"_s})
                QVERIFY(QFile::copy(old.page(page), old.path(name) + u'/' + page));
        }
        QCOMPARE(old.run(), QString());
        QCOMPARE(QFile::exists(old.path(name)), isKept);
        QCOMPARE(old.entries(name).size(), isKept && hasList ? 2 : 0);
    }

    // The pages of deleted recipes, and files that somebody has added to the list.
    void removesOldFiles()
    {
        ExportFixture fixture;
        setBytes(fixture.path(u"precious.txt"_s), "mine");
        fixture.file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Old')"_s);
        QCOMPARE(fixture.run(), QString());
        QFile list(fixture.page(u"pantrywise-files.txt"_s));
        QVERIFY(list.open(QIODevice::Append) && list.write("../precious.txt\n") > 0);
        list.close();
        fixture.file.write(u"UPDATE Recipes SET RecipeName = 'New'"_s);
        QCOMPARE(fixture.run(fixture.page({})), QString()); // into the folder itself
        QCOMPARE(fixture.pages().join(u' '),
                 u"index.html new.html pantrywise-files.txt script.js search.js style.css "
                 "type_misc.html"_s);
        QCOMPARE(fixture.entries().join(u' '), u"Pantrywise precious.txt"_s);
    }

    // Between the first two steps of an exchange, the pages have the name of what is put aside.
    void putsInterruptedPagesBack()
    {
        OldPages old;
        QVERIFY(QDir().rename(old.page({}), old.path(u"Pantrywise.new.old"_s)));
        old.progress.stopAt = 1;
        QCOMPARE(old.run(), QString());
        QVERIFY(old.areKept());
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
