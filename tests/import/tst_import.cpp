#include "data/DatabasePath.h"
#include "import/frmImport.h"
#include "import/frmImportRecipe.h"
#include "interaction/ControlCharacters.h"
#include "platform/ApplicationInformation.h"
#include "platform/Directory.h"
#include "platform/Paths.h"
#include "support/FileBytes.h"
#include "support/FileSizeLimit.h"
#include "support/Rows.h"
#include "support/SrfText.h"
#include "support/WindowFixture.h"
#include "widgets/TextListView.h"

#include <QComboBox>
#include <QLabel>

#include <fstream>
#include <optional>
#include <sys/mount.h>

using namespace platform;
using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;
using Outcome = frmImportRecipe::Outcome;

namespace {

// A copy of a database, which DatabasePath names, on a disk that has room for little more.
class SmallDisk
{
public:
    SmallDisk(const TestDatabase &database, bool isDisk)
        : m_folder(database.folder() + "/small"_L1)
        , m_isDisk(isDisk)
    {
        QDir().mkdir(m_folder);
        if (m_isDisk)
            m_isSmall = ::mount("none", qPrintable(m_folder), "tmpfs", 0, "size=700k") == 0;
        DatabasePath = m_folder + "/data.rbk"_L1;
        QFile::copy(database.path(), DatabasePath);
        if (!m_isDisk)
            m_limit.emplace(400'000);
    }
    ~SmallDisk()
    {
        if (m_isDisk)
            ::umount2(qPrintable(m_folder), MNT_DETACH);
    }

    bool isSmall() const { return m_isSmall; }

    int count(const char *table) const
    {
        SQLite::Database file(DatabasePath.toStdString());
        return file.execAndGet(std::string("SELECT count(*) FROM ") + table).getInt();
    }

private:
    Q_DISABLE_COPY_MOVE(SmallDisk)

    QString m_folder;
    bool m_isDisk;
    bool m_isSmall = true;
    std::optional<FileSizeLimit> m_limit;
};

} // namespace

// The program directory is the directory of this test.
class tst_Import : public QObject
{
    Q_OBJECT

    fs::path m_recipes;
    std::unique_ptr<WindowFixture> m_fixture;
    std::unique_ptr<frmImportRecipe> m_importer;
    frmImport *m_window = nullptr;

    QStringList texts(const QString &list) const
    {
        const QAbstractItemModel &model = *control<TextListView>(*m_window, list).model();
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts += model.index(row, 0).data().toString().trimmed();
        return texts;
    }
    QStringList recipes() const { return texts(u"lstRecipes"_s); }
    QStringList directories() const { return texts(u"dirRecipes"_s); }

    // Opens the folder with the keyboard.
    void enter(const QString &folder)
    {
        auto &list = control<TextListView>(*m_window, u"dirRecipes"_s);
        const auto row = directories().lastIndexOf(folder);
        QVERIFY2(row >= 0, qPrintable(folder));
        list.setCurrentIndex(list.model()->index(static_cast<int>(row), 0));
        QTest::keyClick(&list, Qt::Key_Return);
    }

    void write(const QByteArray &name, const QByteArray &title, const QByteArray &type = "1") const
    {
        std::ofstream(m_recipes / name.toStdString(), std::ios::binary)
            << srf({.title = title, .type = type}).toStdString();
    }

    QString titles() const
    {
        return m_fixture->stored("SELECT RecipeName FROM Recipes ORDER BY 1");
    }

    // The rows of all tables, table by table.
    QString stored() const
    {
        QStringList tables;
        for (const char *table :
             {"Recipes", "Ingredients", "Utensils", "RecipeIngredients", "RecipeUtensils"})
            tables += m_fixture->stored(QByteArray("SELECT * FROM ") + table);
        return tables.join(u" / "_s);
    }

    QString path() const { return m_fixture->file.folder() + "/recipe.srf"_L1; }

    Outcome import(const QByteArray &text) const
    {
        setBytes(path(), text);
        return m_importer->ImportSRFFile(nativePath(path()));
    }

    static MessageBox question(const QString &title)
    {
        return {excerpt(title)
                    + " is already in the database.  Do you want to import it anyways?"_L1,
                u"Already in database"_s,
                Icon::Information,
                {Button::Yes, Button::No},
                Button::No};
    }
    void expectQuestion(const QString &title, Button answer) const
    {
        m_fixture->interaction.expect(question(title), answer);
    }
    void expectQuestionInBatch(const QString &title, const MockInteraction::Answer &answer) const
    {
        MessageBox box = question(title);
        box.buttons.push_back(Button::Stop);
        box.checkBox = u"&Do the same for the other recipes that are already there"_s;
        m_fixture->interaction.expect(box, answer);
    }
    void expect(const QString &text, Button answer = Button::Ok) const
    {
        m_fixture->interaction.expect(
            {text, u"Error"_s, Icon::Exclamation, {Button::Ok, Button::Stop}}, answer);
    }
    // Expects the box for a file whose recipe type is "x".
    void expectBad(const QString &name, Button answer = Button::Ok) const
    {
        expect(u"%1/%2.srf was not imported.\n\nLine 4: expected the number of a recipe type, "
               "found \"x\"."_s.arg(displayPath(m_recipes), name),
               answer);
    }

private Q_SLOTS:
    void init()
    {
        m_recipes = nativePath(programDirectory()) / "recipes";
        fs::remove_all(m_recipes);
        m_fixture = std::make_unique<WindowFixture>();
        m_importer = std::make_unique<frmImportRecipe>(m_fixture->interaction);
        m_importer->Form_Load();
        m_importer->openDataSources();
        m_window = &m_fixture->frame.load<frmImport>(*m_importer);
    }

    void cleanup()
    {
        m_fixture->frame.unloadAll();
        m_importer.reset();
        m_fixture.reset();
        fs::remove_all(m_recipes);
    }

    void findsTheFolders()
    {
        QVERIFY(fs::is_directory(m_recipes)); // made by loading the window
        fs::create_directory(m_recipes / "sub");
        fs::create_directory(m_recipes / "folder.srf");
        fs::create_directory(m_recipes / "shut");
        fs::permissions(m_recipes / "shut", fs::perms::none);
        fs::create_directory_symlink(m_recipes, m_recipes / "sub" / "loop");
        write("one.srf", "One");

        enter(u"recipes"_s); // reads the folder again
        const bool readsAll = canBeOpened(m_recipes / "shut"); // as root
        QStringList inside = directories();
        QCOMPARE(inside.takeFirst(), u"/"_s);
        QCOMPARE(inside.mid(inside.indexOf(u"recipes"_s) + 1),
                 readsAll ? QStringList({u"folder.srf"_s, u"shut"_s, u"sub"_s})
                          : QStringList({u"folder.srf"_s, u"sub"_s}));
        QCOMPARE(recipes(), QStringList(u"one"_s));
        for (int i = 0; i < 50; ++i) {
            enter(u"sub"_s);
            enter(u"loop"_s);
        }
        QCOMPARE(recipes(), QStringList());

        auto &drives = control<QComboBox>(*m_window, u"drvRecipes"_s);
        QVERIFY(drives.findText(u"/"_s) >= 0);
        drives.setCurrentIndex(drives.findText(u"/"_s));
        Q_EMIT drives.activated(drives.currentIndex());
        QVERIFY(!directories().contains(u"recipes"_s));

        m_fixture->frame.unloadAll();
        fs::permissions(m_recipes / "shut", fs::perms::all);
        fs::remove_all(m_recipes);
        std::ofstream(m_recipes) << "a file";
        m_window = &m_fixture->frame.load<frmImport>(*m_importer);
        QCOMPARE(directories().filter(u"recipes"_s), QStringList());
        QVERIFY(directories().contains(u"home"_s)); // the tests' homes, beside the program
    }

    void choosesFiles()
    {
        for (const char *name : {"b.srf", "SOUP.SRF", "a \"quoted\" 'one'.srf", "two\nlines.srf",
                                 "no text \xFC.srf", "other.txt", "srf", ".hidden.srf"})
            write(name, name);
        enter(u"recipes"_s);
        QStringList sorted = recipes();
        sorted.sort();
        QCOMPARE(sorted.join(u", "_s),
                 u"SOUP, a \"quoted\" 'one', b, no text \uFFFD, two\u240Alines"_s);
        const auto chosen = [this] { return control<QLabel>(*m_window, u"lblChosen"_s).text(); };
        auto &list = control<TextListView>(*m_window, u"lstRecipes"_s);
        QCOMPARE(chosen(), u"5 of 5 chosen"_s);
        press(*m_window, u"cmdDeselectAll"_s);
        QCOMPARE(chosen(), u"0 of 5 chosen"_s);
        press(*m_window, u"cmdImport"_s);
        QCOMPARE(titles(), QString());
        QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&list, Qt::Key_Home);
        QTest::keyClick(&list, Qt::Key_Space);
        QCOMPARE(chosen(), u"4 of 5 chosen"_s);
        QTest::keyClick(&list, Qt::Key_B); // moves to b
        QCOMPARE(list.currentIndex().data(), u"b"_s);
        QCOMPARE(chosen(), u"4 of 5 chosen"_s);
        press(*m_window, u"cmdImport"_s);
        QCOMPARE(titles().count(u','), 3);
        QCOMPARE(chosen(), u"4 of 5 chosen"_s);
        fs::remove_all(m_recipes);
        press(*m_window, u"cmdImport"_s);
        QCOMPARE(chosen(), u"0 of 0 chosen"_s);
    }

    // Good, bad, known and deleted files.
    void importsWhatIsChosen()
    {
        write("1.srf", "Soup");
        write("2.srf", "Bad", "x");
        write("3.srf", "Cake");
        write("4.srf", "Gone");
        enter(u"recipes"_s);
        fs::remove(m_recipes / "4.srf");

        // The file system decides the order of the files and so that of the boxes.
        const auto import = [this](Button soup, Button cake) {
            for (const QString &name : recipes()) {
                const Button answer = name == u"1" ? soup : cake;
                if (name == u"2")
                    expectBad(name);
                else if (name == u"4")
                    expect(u"Could not find file.  Try importing file though File, Import."_s);
                else if (answer != Button::Ok)
                    expectQuestionInBatch(name == u"1" ? u"Soup"_s : u"Cake"_s, answer);
                if (answer == Button::Stop && (name == u"1" || name == u"3"))
                    break;
            }
            press(*m_window, u"cmdImport"_s);
        };
        import(Button::Ok, Button::Ok);
        import(Button::Yes, Button::No);
        import(Button::Stop, Button::Stop);
        QCOMPARE(titles(), u"Cake, Soup, Soup 1"_s);
    }

    void stops()
    {
        const QByteArrayList names{"1.srf", "2.srf", "3.srf", "4.srf"};
        for (const QByteArray &name : names)
            write(name, name);
        enter(u"recipes"_s);
        m_fixture->interaction.expectProgressAndCancel(2);
        press(*m_window, u"cmdImport"_s);
        QCOMPARE(titles().count(u','), 1);
        for (const QByteArray &name : names)
            write(name, "Bad", "x");
        expectBad(recipes().constFirst(), Button::Stop);
        press(*m_window, u"cmdImport"_s);
    }

    void storesTheWholeRecipe()
    {
        m_fixture->file.write(u"INSERT INTO Ingredients VALUES (7, 'CRÈME', 1, 2, 0);"
                              "INSERT INTO Utensils VALUES (5, 'Pot')"_s);
        // The fields of a known ingredient are not read, whatever they are. Salt is known after its
        // first entry.
        QCOMPARE(import(srf({.title = "Soup",
                             .type = "2",
                             .serves = "4.5",
                             .instructions = {"Boil.", " ", "Toss."},
                             .ingredients = {"crème|x|y|z||1 cup", "Salt|3|999|True||",
                                             "SALT|bad|bad|bad||2|3 (fine)"},
                             .utensils = {"POT", "Ladle", "ladle"}})),
                 Outcome::Imported);
        QCOMPARE(stored(),
                 u"1|Soup|Quick|A. Cook|2|Boil.\r\n\r\n\r\n\r\nToss.\r\n|5|4.5 / "
                 "7|CRÈME|1|2|0, 8|Salt|3|999|1 / 5|Pot, 6|Ladle / "
                 "1|7|1 cup, 1|8|, 1|8|2|3 (fine) / 1|5, 1|6, 1|6"_s);
    }

    // A linear search for each of them would take longer than the test's time limit.
    void takesManyEntriesInTime()
    {
        constexpr int count = 100'000;
        QByteArrayList entries;
        for (int i = 0; i < count; ++i)
            entries += 'n' + QByteArray::number(i) + "|1|1|1||";
        entries += QByteArrayList(count, "n99999|||");
        QCOMPARE(import(srf({.ingredients = entries})), Outcome::Imported);
        QCOMPARE(m_fixture->stored("SELECT count(*) FROM RecipeIngredients"), u"200000"_s);
    }

    void badNumbers_data()
    {
        const auto egg = [](const QByteArray &fields) {
            return SrfText{.ingredients = {"Salt|3|999|True||", "Egg|" + fields + '|'}};
        };
        addRows<SrfText, int, QString, QString>({
            {"recipe type", {.type = "32768"}, 4, u"the number of a recipe type"_s, u"32768"_s},
            {"servings", {.serves = ""}, 5, u"the number of servings"_s, u""_s},
            {"ingredient type", egg("1.5|1|True|"), 11, u"the number of an ingredient type"_s,
             u"1.5"_s},
            {"shelf life", egg("1|a week|True|"), 11, u"a shelf life in days"_s, u"a week"_s},
            {"vegetarian", egg("1|1|yes|"), 11, u"True or False for vegetarian"_s, u"yes"_s},
            {"missing shelf life", egg("1||q"), 11, u"the shelf life of a new ingredient"_s,
             u"Egg|1||q|"_s},
        });
    }

    void badNumbers()
    {
        const auto [text, line, expected, found] = fetchRow<SrfText, int, QString, QString>();
        m_fixture->interaction.expect(
            {srfErrorText({line, expected, found}, path()), u"Error"_s, Icon::Exclamation});
        QCOMPARE(import(srf(text)), Outcome::NotImported);
        QCOMPARE(stored(), u" /  /  /  / "_s);
    }

    void takenTitles_data()
    {
        const QString longTitle = u"a\n"_s.repeated(4000);
        addRows<QString, QString>({{"other case", u"Éclair"_s, u"éCLAIR"_s},
                                   {"quotes", u"Baba's \"Nudeln\""_s, u"Baba's \"Nudeln\""_s},
                                   {"pattern characters", u"100% *?_ soup"_s, u"100% *?_ soup"_s},
                                   {"spaces and a line feed", u" a\nb "_s, u" a\nb "_s},
                                   {"too long for a box", longTitle, longTitle}});
    }

    // The names of the catalogs are found again as well.
    void takenTitles()
    {
        const auto [title, again] = fetchRow<QString, QString>();
        const auto recipe = [](const QString &title) {
            const QByteArray name = title.toUtf8();
            return srf({.title = name, .ingredients = {name + "|1|1|True||1"}, .utensils = {name}});
        };
        QCOMPARE(import(recipe(title)), Outcome::Imported);
        const QString next = title.toUpper() + " 1"_L1;
        QCOMPARE(import(srf({.title = next.toUtf8()})), Outcome::Imported);
        expectQuestion(again, Button::No);
        QCOMPARE(import(recipe(again)), Outcome::NotImported);
        expectQuestion(again, Button::Yes);
        QCOMPARE(import(recipe(again)), Outcome::Imported);
        QCOMPARE(titles(), QStringList({title, next, again + " 2"_L1}).join(u", "_s));
        QCOMPARE(
            m_fixture->stored("SELECT (SELECT count(*) FROM Ingredients), count(*) FROM Utensils"),
            u"1|1"_s);
    }

    void aBatchKeepsTheGoodFiles()
    {
        m_fixture->file.write(
            u"CREATE TRIGGER no BEFORE INSERT ON Utensils WHEN new.UtensilName = 'bad' "
            "BEGIN SELECT raise(ABORT, 'no'); END"_s);
        m_importer->batch([this] {
            import(srf({.title = "One", .utensils = { "Pot" }}));
            QCOMPARE(titles(), u""_s); // not yet committed
            import(srf({.title = "Two", .utensils = { "Pot" }}));
            QVERIFY_THROWS_EXCEPTION(DatabaseError,
                                     import(srf({.title = "Four",
                                                 .ingredients = {"Salt|1|1|1||"},
                                                 .utensils = {"Pan", "bad"}})));
            QCOMPARE(titles(), u"One, Two"_s);
            // The cursors have forgotten Salt and Pan too: the next import adds them again.
            import(srf({.title = "Five", .ingredients = {"Salt|1|1|1||"}, .utensils = { "Pan" }}));
        });
        QCOMPARE(titles(), u"Five, One, Two"_s);
        QCOMPARE(m_fixture->stored("SELECT UtensilName FROM Utensils, Ingredients"), u"Pot, Pan"_s);
    }

    void answersForAll_data()
    {
        using Checked = MockInteraction::Checked;
        addRows<MockInteraction::Checked, Outcome, QString>({
            {"No", Checked{Button::No}, Outcome::NotImported, u"Soup"_s},
            {"Yes", Checked{Button::Yes}, Outcome::Imported, u"Soup, Soup 1, Soup 2"_s},
            {"Stop", Checked{Button::Stop}, Outcome::Stopped, u"Soup"_s},
        });
    }

    // The answer to one question holds for the batch, and Stop for nothing else.
    void answersForAll()
    {
        const auto [answer, outcome, expected] =
            fetchRow<MockInteraction::Checked, Outcome, QString>();
        import(srf({}));
        const bool asksAgain = outcome == Outcome::Stopped;
        m_importer->batch([&, expectedOutcome = outcome, answer = answer] {
            for (int file = 0; file < 2; ++file) {
                if (file == 0 || asksAgain)
                    expectQuestionInBatch(u"Soup"_s, answer);
                QCOMPARE(import(srf({})), expectedOutcome);
            }
        });
        QCOMPARE(titles(), expected);
        expectQuestion(u"Soup"_s, Button::No);
        import(srf({}));
    }

    // Neither Stop nor the check box.
    void asksAboutASingleFile()
    {
        write("1.srf", "Soup");
        enter(u"recipes"_s);
        press(*m_window, u"cmdImport"_s);
        expectQuestion(u"Soup"_s, Button::No);
        press(*m_window, u"cmdImport"_s);
    }

    void fullDisk_data()
    {
        addRows<bool, QString>({{"small disk", true, u" is full. Make room and try again."_s},
                                {"limited file size", false, u" could not be "_s}});
    }

    // What fits is kept, file by file, and no question is asked twice.
    void fullDisk()
    {
        const auto [isDisk, reason] = fetchRow<bool, QString>();
        constexpr int files = 60;
        const QByteArrayList instructions(1000, "Stir the soup.");
        for (int i = 0; i < files; ++i)
            setBytes(u"%1/%2.srf"_s.arg(m_fixture->file.folder()).arg(i),
                     srf({.title = "Soup " + QByteArray::number(i),
                          .instructions = instructions,
                          .utensils = {"Pot " + QByteArray::number(i)}}));
        m_fixture->file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Soup 0')"_s);
        const SmallDisk disk(m_fixture->file, isDisk);
        if (!disk.isSmall())
            QSKIP("only root may mount a file system");

        expectQuestionInBatch(u"Soup 0"_s, Button::Yes);
        frmImportRecipe importer(m_fixture->interaction);
        importer.Form_Load();
        const QString failure = failureOf([&] {
            importer.batch([&] {
                for (int i = 0; i < files; ++i)
                    importer.ImportSRFFile(
                        nativePath(u"%1/%2.srf"_s.arg(m_fixture->file.folder()).arg(i)));
            });
        });
        const int imported = disk.count("Recipes") - 1;
        QVERIFY(imported > 3 && imported < files - 3);
        QCOMPARE(disk.count("RecipeUtensils"), imported);
        const QString start =
            u"%1 recipes were imported. The import ended at \"%1.srf\":\n\n"_s.arg(imported);
        QVERIFY2(failure.startsWith(start) && failure.contains(reason)
                     && !failure.contains(DatabaseError::nothingStored())
                     && failure.endsWith("\n\nThen press Import again to import the other recipes, "
                                         "and answer No for those that are already there."_L1),
                 qPrintable(failure));
    }

    // The kind of the exception stays, so that the error boundary can offer a copy.
    void damageDuringABatch()
    {
        QString failure;
        try {
            m_importer->batch([&] {
                import(srf({}));
                throw UnusableDatabase(u"data.rbk"_s, u"It is damaged. Nothing was stored."_s);
            });
        } catch (const UnusableDatabase &error) {
            failure = error.problem();
        }
        QCOMPARE(failure,
                 u"1 recipe was imported. The import ended at \"recipe.srf\":\n\nIt is damaged."_s);
        QCOMPARE(titles(), u"Soup"_s);
    }

    // Another program takes the first free name while the question is shown.
    void locksNothingWhileAsking()
    {
        struct WritingInteraction : MockInteraction {
            TestDatabase *file = nullptr;
            Button show(const MessageBox &) override
            {
                file->write(u"INSERT INTO Recipes (RecipeName) VALUES ('soup 1')"_s);
                return Button::Yes;
            }
        };
        WritingInteraction interaction;
        interaction.file = &m_fixture->file;
        frmImportRecipe importer(interaction);
        importer.Form_Load();
        setBytes(path(), srf({}));
        importer.batch([&] {
            importer.ImportSRFFile(nativePath(path()));
            importer.ImportSRFFile(nativePath(path()));
        });
        QCOMPARE(titles(), u"Soup, soup 1, Soup 2"_s);
    }

    void seesWhatOthersHaveWritten()
    {
        const QByteArray salted = srf({.ingredients = {"Salt|3|999|True||"}});
        import(salted);
        m_fixture->file.write(
            u"DELETE FROM Recipes; UPDATE Ingredients SET IngredientName = 'Pepper'"_s);
        QCOMPARE(import(salted), Outcome::Imported);
        QCOMPARE(m_fixture->stored("SELECT IngredientName FROM Ingredients"), u"Pepper, Salt"_s);
    }
};

QTEST_MAIN(tst_Import)
#include "tst_import.moc"
