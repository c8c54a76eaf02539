#include "import/frmImport.h"
#include "import/frmImportRecipe.h"
#include "platform/ApplicationInformation.h"
#include "platform/Directory.h"
#include "platform/Paths.h"
#include "support/SrfText.h"
#include "support/WindowFixture.h"
#include "widgets/TextListView.h"

#include <QComboBox>
#include <QLabel>

#include <fstream>

using namespace platform;
using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;

// The program directory is the directory of this test.
class tst_frmImport : public QObject
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
                    m_fixture->interaction.expect(
                        {(name == u"1" ? u"Soup"_s : u"Cake"_s)
                             + " is already in the database.  Do you want to import it anyways?"_L1,
                         u"Already in database"_s,
                         Icon::Information,
                         {Button::Yes, Button::No, Button::Stop},
                         Button::No},
                        answer);
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
        for (const char *name : {"1", "2", "3", "4"})
            write(name + ".srf"_ba, name);
        enter(u"recipes"_s);
        m_fixture->interaction.expectProgressAndCancel(2);
        press(*m_window, u"cmdImport"_s);
        QCOMPARE(titles().count(u','), 1);
        for (const char *name : {"1.srf", "2.srf", "3.srf", "4.srf"})
            write(name, "Bad", "x");
        expectBad(recipes().constFirst(), Button::Stop);
        press(*m_window, u"cmdImport"_s);
    }
};

QTEST_MAIN(tst_frmImport)
#include "tst_frmimport.moc"
