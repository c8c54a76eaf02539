#include "DatabasePath.h"
#include "FileBytes.h"
#include "Paths.h"
#include "RecipeFile.h"
#include "StrictDoorway.h"
#include "frmImportRecipe.h"

#include <SQLiteCpp/Statement.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using Outcome = frmImportRecipe::Outcome;

// A recipe file's text of a title and what stands in its sections.
struct Srf {
    QByteArray name;
    QByteArray ingredients = {};
    QByteArray utensils = {};
    QByteArray type = "2";
    QByteArray serves = "4";
    QByteArray instructions = {};

    QByteArray text() const
    {
        return "cookbook\r" + name + "\rA. Cook\r" + type + '\r' + serves + "\rQuick\r"
            + "<Instructions>\r" + instructions + "</Instructions>\r<Ingredients>\r" + ingredients
            + "</Ingredients>\r<Utensils>\r" + utensils + "</Utensils>\r";
    }
};

const char everything[] = R"(
    SELECT 'R' || RecipeID, RecipeName, Author, RecipeType, Serves, Description, Rating,
           replace(Instructions, char(13, 10), '/') FROM Recipes
    UNION ALL SELECT 'I' || IngredientID, IngredientName, IngredientType, ShelfLife, Vegetarian,
           '', '', '' FROM Ingredients
    UNION ALL SELECT 'U' || UtensilID, UtensilName, '', '', '', '', '', '' FROM Utensils
    UNION ALL SELECT 'r' || RecipeID, 'I' || IngredientID, Quantity, '', '', '', '', ''
           FROM RecipeIngredients
    UNION ALL SELECT 'r' || RecipeID, 'U' || UtensilID, '', '', '', '', '', '' FROM RecipeUtensils)";

} // namespace

class TestFrmImportRecipe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void storesTheWholeRecipe();
    void usesWhatTheCatalogsHold();
    void takesManyEntriesInTime();
    void refusesBadNumbersWhole();
    void asksAboutATakenTitle();
    void findsNamesWithAnyCharacters();
    void aBatchKeepsTheGoodFiles();
    void locksNothingWhileAsking();
    void seesWhatOthersHaveWritten();

private:
    void openImporter(Doorway &doorway);
    Outcome import(const Srf &srf);
    QStringList rows(const QString &query = QString::fromLatin1(everything));
    QStringList titles() { return rows(u"SELECT RecipeName FROM Recipes"_s); }
    void expectComplaint(int line, const QString &expected, const QString &found);
    void expectQuestion(const QString &title, Button answer);

    std::unique_ptr<RecipeFile> m_file;
    std::unique_ptr<StrictDoorway> m_doorway;
    std::unique_ptr<frmImportRecipe> m_importer;
};

void TestFrmImportRecipe::init()
{
    m_file = std::make_unique<RecipeFile>();
    m_doorway = std::make_unique<StrictDoorway>();
    DatabasePath = m_file->path();
    openImporter(*m_doorway);
}

void TestFrmImportRecipe::openImporter(Doorway &doorway)
{
    m_importer = std::make_unique<frmImportRecipe>(doorway);
    m_importer->Form_Load();
    m_importer->openDataSources();
}

void TestFrmImportRecipe::cleanup()
{
    m_importer.reset();
    m_doorway->checkAllCame();
}

Outcome TestFrmImportRecipe::import(const Srf &srf)
{
    const QString path = m_file->folder() + "/recipe.srf"_L1;
    setBytes(path, srf.text());
    return m_importer->ImportSRFFile(platform::nativePath(path));
}

QStringList TestFrmImportRecipe::rows(const QString &query)
{
    SQLite::Database database = m_file->other();
    SQLite::Statement statement(database, query.toStdString());
    QStringList result;
    while (statement.executeStep()) {
        QStringList cells;
        for (int i = 0; i < statement.getColumnCount(); ++i)
            cells += QString::fromStdString(statement.getColumn(i).getString());
        while (cells.size() > 1 && cells.last().isEmpty())
            cells.removeLast();
        result += cells.join(u'|');
    }
    return result;
}

void TestFrmImportRecipe::expectComplaint(int line, const QString &expected, const QString &found)
{
    const QString path = m_file->folder() + "/recipe.srf"_L1;
    m_doorway->expect(
        {complaintText({line, expected, found}, path), u"Error"_s, Icon::Exclamation});
}

void TestFrmImportRecipe::expectQuestion(const QString &title, Button answer)
{
    m_doorway->expect({title + " is already in the database.  Do you want to import it anyways?"_L1,
                       u"Already in database"_s,
                       Icon::Information,
                       {Button::Yes, Button::No},
                       Button::No},
                      answer);
}

void TestFrmImportRecipe::storesTheWholeRecipe()
{
    QCOMPARE(import({"Pasta with butter", "Pasta|9|365|True||1 lb\rButter|7|30|False||2 tbsp\r",
                     "Large pot\r", "2", "4.5", "Boil.\r \rToss.\r"}),
             Outcome::Imported);
    QCOMPARE(rows(),
             QStringList({u"R1|Pasta with butter|A. Cook|2|4.5|Quick|5|Boil.////Toss./"_s,
                          u"I1|Pasta|9|365|1"_s, u"I2|Butter|7|30|0"_s, u"U1|Large pot"_s,
                          u"r1|I1|1 lb"_s, u"r1|I2|2 tbsp"_s, u"r1|U1"_s}));
}

void TestFrmImportRecipe::usesWhatTheCatalogsHold()
{
    m_file->write(u"INSERT INTO Ingredients VALUES (7, 'CRÈME', 1, 2, 0);"
                  "INSERT INTO Utensils VALUES (5, 'Pot')"_s);
    // The fields of a known ingredient are not read, whatever stands there; its first entry in the
    // file makes a new one known.
    QCOMPARE(
        import({"Soup", "crème|x|y|z||1 cup\rSalt|3|999|True||\rSALT|bad|bad|bad||2|3 (fine)\r",
                "POT\rLadle\rladle\r"}),
        Outcome::Imported);
    QCOMPARE(rows().mid(1),
             QStringList({u"I7|CRÈME|1|2|0"_s, u"I8|Salt|3|999|1"_s, u"U5|Pot"_s, u"U6|Ladle"_s,
                          u"r1|I7|1 cup"_s, u"r1|I8"_s, u"r1|I8|2|3 (fine)"_s, u"r1|U5"_s,
                          u"r1|U6"_s, u"r1|U6"_s}));
}

// Looking for each of them among all the others would take longer than a test may.
void TestFrmImportRecipe::takesManyEntriesInTime()
{
    constexpr int count = 100'000;
    QByteArray entries;
    for (int i = 0; i < count; ++i)
        entries += 'n' + QByteArray::number(i) + "|1|1|1||\r";
    entries += QByteArray("n99999|||\r").repeated(count);
    QCOMPARE(import({"Soup", entries}), Outcome::Imported);
    QCOMPARE(rows(u"SELECT count(*) FROM RecipeIngredients"_s), QStringList(u"200000"_s));
}

void TestFrmImportRecipe::refusesBadNumbersWhole()
{
    const QByteArray good = "Salt|3|999|True||\r";
    const QString type = u"the number of a recipe type"_s;
    const struct {
        Srf srf;
        int line;
        QString expected;
        QString found;
    } table[] = {
        {{"A", good, {}, "Soup"}, 4, type, u"Soup"_s},
        {{"A", good, {}, "32768"}, 4, type, u"32768"_s},
        {{"A", good, {}, "2", ""}, 5, u"the number of servings"_s, u""_s},
        {{"A", good + "Egg|1.5|1|True||\r"}, 11, u"the number of an ingredient type"_s, u"1.5"_s},
        {{"A", good + "Egg|1|a week|True||\r"}, 11, u"a shelf life in days"_s, u"a week"_s},
        {{"A", good + "Egg|1|1|yes||\r"}, 11, u"True or False for vegetarian"_s, u"yes"_s},
    };
    for (const auto &[srf, line, expected, found] : table) {
        expectComplaint(line, expected, found);
        QCOMPARE(import(srf), Outcome::NotImported);
        QCOMPARE(rows(), QStringList());
    }
}

void TestFrmImportRecipe::asksAboutATakenTitle()
{
    import({"Éclair"});
    expectQuestion(u"éCLAIR"_s, Button::No);
    QCOMPARE(import({"éCLAIR"}), Outcome::NotImported);
    for (int i = 0; i < 2; ++i) {
        expectQuestion(u"Éclair"_s, Button::Yes);
        QCOMPARE(import({"Éclair"}), Outcome::Imported);
    }
    QCOMPARE(titles(), QStringList({u"Éclair"_s, u"Éclair 1"_s, u"Éclair 2"_s}));
}

void TestFrmImportRecipe::findsNamesWithAnyCharacters()
{
    for (const QByteArray name : {"Baba's \"Nudeln\"", "100% *?_ soup", "''", " Rice ", "a\nb"}) {
        const Srf srf{name, name + "|1|1|True||1\r", name + '\r'};
        QCOMPARE(import(srf), Outcome::Imported);
        expectQuestion(QString::fromUtf8(name), Button::Yes);
        QCOMPARE(import(srf), Outcome::Imported);
    }
    const QString counts = u"SELECT (SELECT count(*) FROM Ingredients), (SELECT count(*) FROM "
                           "Utensils), (SELECT count(*) FROM RecipeUtensils)"_s;
    QCOMPARE(rows(counts), QStringList(u"5|5|10"_s));
}

void TestFrmImportRecipe::aBatchKeepsTheGoodFiles()
{
    m_file->write(u"CREATE TRIGGER no BEFORE INSERT ON Utensils WHEN new.UtensilName = 'bad' "
                  "BEGIN SELECT raise(ABORT, 'no'); END"_s);
    m_importer->batch([this] {
        import({"One", {}, "Pot\r"});
        QCOMPARE(titles(), QStringList()); // not yet committed
        import({"Two", {}, "Pot\r"});
        QVERIFY_THROWS_EXCEPTION(DatabaseError, import({"Four", "Salt|1|1|1||\r", "Pan\rbad\r"}));
        QCOMPARE(titles(), QStringList({u"One"_s, u"Two"_s}));
        // Nothing is left in the cursors either: the next import makes the catalog rows anew.
        import({"Five", "Salt|1|1|1||\r", "Pan\r"});
    });
    QCOMPARE(titles(), QStringList({u"One"_s, u"Two"_s, u"Five"_s}));
    QCOMPARE(rows(u"SELECT UtensilName FROM Utensils, Ingredients"_s),
             QStringList({u"Pot"_s, u"Pan"_s}));
}

void TestFrmImportRecipe::locksNothingWhileAsking()
{
    // Another program renames the recipe and takes the first free name while the question stands.
    class Meanwhile : public Doorway
    {
    public:
        RecipeFile *file = nullptr;
        Button show(const MessageBox &) override
        {
            file->write(u"INSERT INTO Recipes (RecipeName) VALUES ('soup 1')"_s);
            return Button::Yes;
        }
        QString ask(const InputBox &) override { return {}; }
        QString choose(const FileChooser &) override { return {}; }
        QString choose(const FolderChooser &) override { return {}; }
    };

    Meanwhile doorway;
    doorway.file = m_file.get();
    openImporter(doorway);
    m_importer->batch([this] {
        import({"Soup"});
        import({"Soup"});
    });
    QCOMPARE(titles(), QStringList({u"Soup"_s, u"soup 1"_s, u"Soup 2"_s}));
    m_importer.reset();
}

void TestFrmImportRecipe::seesWhatOthersHaveWritten()
{
    import({"Soup", "Salt|3|999|True||\r"});
    m_file->write(u"DELETE FROM Recipes; UPDATE Ingredients SET IngredientName = 'Pepper'"_s);
    QCOMPARE(import({"Soup", "Salt|3|999|True||\r"}), Outcome::Imported);
    QCOMPARE(rows(u"SELECT IngredientName FROM Ingredients"_s),
             QStringList({u"Pepper"_s, u"Salt"_s}));
}

QTEST_GUILESS_MAIN(TestFrmImportRecipe)
#include "tst_frmimportrecipe.moc"
