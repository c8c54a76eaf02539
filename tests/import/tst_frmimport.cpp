#include "data/DatabasePath.h"
#include "frame/Frame.h"
#include "import/frmImport.h"
#include "import/frmImportRecipe.h"
#include "platform/ApplicationInformation.h"
#include "platform/Directory.h"
#include "platform/Paths.h"
#include "support/MockInteraction.h"
#include "support/RecipeFile.h"
#include "support/SrfText.h"
#include "widgets/TextListView.h"

#include <QComboBox>
#include <QLabel>
#include <QMdiArea>
#include <QPushButton>
#include <QTest>

#include <SQLiteCpp/Statement.h>

#include <filesystem>
#include <fstream>

using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;

// The program directory is the directory of this test.
class tst_frmImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void findsTheFolders();
    void choosesFiles();
    void importsWhatIsChosen();
    void stops_data();
    void stops();

private:
    template <class Control>
    Control &control(const char *name) const
    {
        return *m_window->findChild<Control *>(QLatin1StringView(name));
    }
    void press(const char *button) { control<QPushButton>(button).click(); }
    QStringList texts(const char *list) const;
    void enter(const QString &folder);
    void write(const QByteArray &name, const QByteArray &title, const QByteArray &type = "1",
               int ingredients = 1) const;
    QStringList titles() const;

    fs::path m_recipes;
    std::unique_ptr<RecipeFile> m_file;
    std::unique_ptr<MockInteraction> m_interaction;
    std::unique_ptr<frmImportRecipe> m_importer;
    std::unique_ptr<QMdiArea> m_area;
    std::unique_ptr<Frame> m_frame;
    frmImport *m_window = nullptr;
};

void tst_frmImport::init()
{
    m_recipes = platform::nativePath(platform::programDirectory()) / "recipes";
    fs::remove_all(m_recipes);
    m_file = std::make_unique<RecipeFile>();
    DatabasePath = m_file->path();
    m_interaction = std::make_unique<MockInteraction>();
    m_importer = std::make_unique<frmImportRecipe>(*m_interaction);
    m_importer->Form_Load();
    m_importer->openDataSources();
    m_area = std::make_unique<QMdiArea>();
    m_frame = std::make_unique<Frame>(*m_interaction, *m_area);
    m_window = &m_frame->load<frmImport>(*m_importer);
}

void tst_frmImport::cleanup()
{
    m_frame->unloadAll();
    m_interaction->checkAllCame();
    m_frame.reset();
    m_area.reset();
    m_importer.reset();
    fs::remove_all(m_recipes);
}

QStringList tst_frmImport::texts(const char *list) const
{
    const QAbstractItemModel &model = *control<TextListView>(list).model();
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts += model.index(row, 0).data().toString().trimmed();
    return texts;
}

// Opens the folder with the keyboard.
void tst_frmImport::enter(const QString &folder)
{
    auto &list = control<TextListView>("dirRecipes");
    const auto row = texts("dirRecipes").lastIndexOf(folder);
    QVERIFY2(row >= 0, qPrintable(folder));
    list.setCurrentIndex(list.model()->index(static_cast<int>(row), 0));
    QTest::keyClick(&list, Qt::Key_Return);
}

void tst_frmImport::write(const QByteArray &name, const QByteArray &title, const QByteArray &type,
                          int ingredients) const
{
    const QByteArrayList entries(ingredients, "Salt|1|1|True||1 cup");
    std::ofstream(m_recipes / name.toStdString(), std::ios::binary)
        << srf({.title = title, .type = type, .ingredients = entries}).toStdString();
}

// Each with the number of its ingredients, because a recipe is imported completely or not at all.
QStringList tst_frmImport::titles() const
{
    SQLite::Database database = m_file->other();
    SQLite::Statement rows(database,
                           "SELECT RecipeName || ' ' || count(RecipeIngredients.RecipeID) FROM "
                           "Recipes NATURAL LEFT JOIN RecipeIngredients GROUP BY RecipeID");
    QStringList titles;
    while (rows.executeStep())
        titles += QString::fromStdString(rows.getColumn(0));
    return titles;
}

void tst_frmImport::findsTheFolders()
{
    QVERIFY(fs::is_directory(m_recipes)); // made by loading the window
    fs::create_directory(m_recipes / "sub");
    fs::create_directory(m_recipes / "folder.srf");
    fs::create_directory(m_recipes / "shut");
    fs::permissions(m_recipes / "shut", fs::perms::none);
    fs::create_directory_symlink(m_recipes, m_recipes / "sub" / "loop");
    write("one.srf", "One");

    enter(u"recipes"_s); // reads the folder again
    const bool readsAll = platform::canBeOpened(m_recipes / "shut"); // as root
    QStringList inside = texts("dirRecipes");
    QCOMPARE(inside.takeFirst(), u"/"_s);
    QCOMPARE(inside.mid(inside.indexOf(u"recipes"_s) + 1),
             readsAll ? QStringList({u"folder.srf"_s, u"shut"_s, u"sub"_s})
                      : QStringList({u"folder.srf"_s, u"sub"_s}));
    QCOMPARE(texts("lstRecipes"), QStringList(u"one"_s));
    for (int i = 0; i < 50; ++i) {
        enter(u"sub"_s);
        enter(u"loop"_s);
    }
    QCOMPARE(texts("lstRecipes"), QStringList());

    auto &drives = control<QComboBox>("drvRecipes");
    QVERIFY(drives.findText(u"/"_s) >= 0);
    drives.setCurrentIndex(drives.findText(u"/"_s));
    Q_EMIT drives.activated(drives.currentIndex());
    QVERIFY(!texts("dirRecipes").contains(u"recipes"_s));

    m_frame->unloadAll();
    fs::permissions(m_recipes / "shut", fs::perms::all);
    fs::remove_all(m_recipes);
    std::ofstream(m_recipes) << "a file";
    m_window = &m_frame->load<frmImport>(*m_importer);
    QCOMPARE(texts("dirRecipes").filter(u"recipes"_s), QStringList());
    QVERIFY(texts("dirRecipes").contains(u"home"_s)); // the tests' homes, beside the program
}

void tst_frmImport::choosesFiles()
{
    for (const char *name : {"b.srf", "SOUP.SRF", "a \"quoted\" 'one'.srf", "two\nlines.srf",
                             "no text \xFC.srf", "other.txt", "srf", ".hidden.srf"})
        write(name, name);
    enter(u"recipes"_s);
    QStringList sorted = texts("lstRecipes");
    sorted.sort();
    QCOMPARE(sorted,
             QStringList({u"SOUP"_s, u"a \"quoted\" 'one'"_s, u"b"_s, u"no text \uFFFD"_s,
                          u"two\u240Alines"_s}));
    const auto chosen = [this] { return control<QLabel>("lblChosen").text(); };
    auto &list = control<TextListView>("lstRecipes");
    QCOMPARE(chosen(), u"5 of 5 chosen"_s);
    press("cmdDeselectAll");
    QCOMPARE(chosen(), u"0 of 5 chosen"_s);
    press("cmdImport");
    QCOMPARE(titles(), QStringList());
    QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&list, Qt::Key_Home);
    QTest::keyClick(&list, Qt::Key_Space);
    QCOMPARE(chosen(), u"4 of 5 chosen"_s);
    QTest::keyClick(&list, Qt::Key_B); // moves to b
    QCOMPARE(list.currentIndex().data(), u"b"_s);
    QCOMPARE(chosen(), u"4 of 5 chosen"_s);
    press("cmdImport");
    QCOMPARE(titles().size(), 4);
    QCOMPARE(chosen(), u"4 of 5 chosen"_s);
    fs::remove_all(m_recipes);
    press("cmdImport");
    QCOMPARE(chosen(), u"0 of 0 chosen"_s);
}

// Good, bad, known and deleted files.
void tst_frmImport::importsWhatIsChosen()
{
    write("1.srf", "Soup");
    write("2.srf", "Bad", "x");
    write("3.srf", "Cake");
    write("4.srf", "Gone");
    enter(u"recipes"_s);
    fs::remove(m_recipes / "4.srf");

    const MessageBox bad{u"%1/2.srf was not imported.\n\nLine 4: expected the number of a recipe "
                         "type, found \"x\"."_s.arg(platform::displayPath(m_recipes)),
                         u"Error"_s,
                         Icon::Exclamation,
                         {Button::Ok, Button::Stop}};
    const MessageBox gone{u"Could not find file.  Try importing file though File, Import."_s,
                          u"Error"_s,
                          Icon::Exclamation,
                          {Button::Ok, Button::Stop}};
    const auto asks = [](const QString &name) {
        return MessageBox{
            name + " is already in the database.  Do you want to import it anyways?"_L1,
            u"Already in database"_s,
            Icon::Information,
            {Button::Yes, Button::No, Button::Stop},
            Button::No};
    };
    // The file system decides the order of the files and so that of the boxes.
    const QStringList order = texts("lstRecipes");
    const auto expectBoxes = [&](const QMap<QString, Button> &answers) {
        for (const QString &name : order) {
            if (name == u"2")
                m_interaction->expect(bad);
            else if (name == u"4")
                m_interaction->expect(gone);
            else if (answers.contains(name))
                m_interaction->expect(asks(name == u"1" ? u"Soup"_s : u"Cake"_s), answers[name]);
            if (answers.value(name) == Button::Stop)
                break;
        }
    };
    expectBoxes({});
    press("cmdImport");
    expectBoxes({{u"1"_s, Button::Yes}, {u"3"_s, Button::No}});
    press("cmdImport");
    expectBoxes({{u"1"_s, Button::Stop}, {u"3"_s, Button::Stop}});
    press("cmdImport");
    QStringList found = titles();
    found.sort();
    QCOMPARE(found, QStringList({u"Cake 1"_s, u"Soup 1"_s, u"Soup 1 1"_s}));
}

void tst_frmImport::stops_data()
{
    QTest::addColumn<bool>("bad");
    QTest::newRow("by the box of a bad file") << true;
    QTest::newRow("by the progress box") << false;
}

void tst_frmImport::stops()
{
    QFETCH(const bool, bad);
    constexpr int files = 4;
    constexpr int ingredients = 20;
    for (int i = 0; i < files; ++i)
        write(QByteArray::number(i) + ".srf", "R" + QByteArray::number(i), bad ? "x" : "1",
              ingredients);
    enter(u"recipes"_s);
    if (bad) {
        const QString first = texts("lstRecipes").constFirst();
        m_interaction->expect(
            {u"%1/%2.srf was not imported.\n\nLine 4: expected the number of a recipe "
             "type, found \"x\"."_s.arg(platform::displayPath(m_recipes), first),
             u"Error"_s,
             Icon::Exclamation,
             {Button::Ok, Button::Stop}},
            Button::Stop);
    } else {
        m_interaction->expectProgressAndCancel(2);
    }
    press("cmdImport");
    QCOMPARE(titles().size(), bad ? 0 : 2);
    for (const QString &title : titles())
        QVERIFY2(title.endsWith(u" %1"_s.arg(ingredients)), qPrintable(title));
}

QTEST_MAIN(tst_frmImport)
#include "tst_frmimport.moc"
