#include "data/DatabasePath.h"
#include "import/frmImportRecipe.h"
#include "platform/Paths.h"
#include "support/FileBytes.h"
#include "support/MockInteraction.h"
#include "support/RecipeFile.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Outcome = frmImportRecipe::Outcome;

// A recipe file's text.
QByteArray srf(const QByteArray &name, const QByteArray &ingredients = {},
               const QByteArray &utensils = {}, const QByteArray &type = "2",
               const QByteArray &serves = "4", const QByteArray &instructions = {})
{
    return "cookbook\r" + name + "\rA. Cook\r" + type + '\r' + serves + "\rQuick\r<Instructions>\r"
        + instructions + "</Instructions>\r<Ingredients>\r" + ingredients
        + "</Ingredients>\r<Utensils>\r" + utensils + "</Utensils>\r";
}

} // namespace

class TestFrmImportRecipe : public QObject
{
    Q_OBJECT

    std::unique_ptr<RecipeFile> m_file;
    std::unique_ptr<MockInteraction> m_interaction;
    std::unique_ptr<frmImportRecipe> m_importer;

    void openImporter(Interaction &interaction)
    {
        m_importer = std::make_unique<frmImportRecipe>(interaction);
        m_importer->Form_Load();
        m_importer->openDataSources();
    }

    QString path() const { return m_file->folder() + "/recipe.srf"_L1; }

    Outcome import(const QByteArray &text) const
    {
        setBytes(path(), text);
        return m_importer->ImportSRFFile(platform::nativePath(path()));
    }

    QString titles() const { return m_file->stored("SELECT RecipeName FROM Recipes"); }

    // The rows of all tables.
    QString stored() const
    {
        QStringList tables;
        for (const char *table :
             {"Recipes", "Ingredients", "Utensils", "RecipeIngredients", "RecipeUtensils"})
            tables += m_file->stored(QByteArray("SELECT * FROM ") + table);
        return tables.join(u" / "_s);
    }

    void expectQuestion(const QString &title, Button answer) const
    {
        m_interaction->expect(
            {title + " is already in the database.  Do you want to import it anyways?"_L1,
             u"Already in database"_s,
             Icon::Information,
             {Button::Yes, Button::No},
             Button::No},
            answer);
    }

private Q_SLOTS:
    void init()
    {
        m_file = std::make_unique<RecipeFile>();
        m_interaction = std::make_unique<MockInteraction>();
        DatabasePath = m_file->path();
        openImporter(*m_interaction);
    }

    void cleanup()
    {
        m_importer.reset();
        m_interaction->checkAllCame();
    }

    void storesTheWholeRecipe()
    {
        m_file->write(u"INSERT INTO Ingredients VALUES (7, 'CRÈME', 1, 2, 0);"
                      "INSERT INTO Utensils VALUES (5, 'Pot')"_s);
        // The fields of a known ingredient are not read, whatever stands there; its first entry in
        // the file makes a new one known.
        QCOMPARE(import(srf("Soup",
                            "crème|x|y|z||1 cup\rSalt|3|999|True||\rSALT|bad|bad|bad||2|3 (fine)\r",
                            "POT\rLadle\rladle\r", "2", "4.5", "Boil.\r \rToss.\r")),
                 Outcome::Imported);
        QCOMPARE(stored(),
                 u"1|Soup|Quick|A. Cook|2|Boil.\r\n\r\n\r\n\r\nToss.\r\n|5|4.5 / "
                 "7|CRÈME|1|2|0, 8|Salt|3|999|1 / 5|Pot, 6|Ladle / "
                 "1|7|1 cup, 1|8|, 1|8|2|3 (fine) / 1|5, 1|6, 1|6"_s);
    }

    // Looking for each of them among all the others would take longer than a test may.
    void takesManyEntriesInTime()
    {
        constexpr int count = 100'000;
        QByteArray entries;
        for (int i = 0; i < count; ++i)
            entries += 'n' + QByteArray::number(i) + "|1|1|1||\r";
        entries += QByteArray("n99999|||\r").repeated(count);
        QCOMPARE(import(srf("Soup", entries)), Outcome::Imported);
        QCOMPARE(m_file->stored("SELECT count(*) FROM RecipeIngredients"), u"200000"_s);
    }

    void refusesBadNumbersWhole()
    {
        const QByteArray good = "Salt|3|999|True||\r";
        const auto egg = [&good](const QByteArray &fields) {
            return srf("A", good + "Egg|" + fields + "|\r");
        };
        const std::tuple<QByteArray, int, QString, QString> table[] = {
            {srf("A", good, {}, "32768"), 4, u"the number of a recipe type"_s, u"32768"_s},
            {srf("A", good, {}, "2", ""), 5, u"the number of servings"_s, u""_s},
            {egg("1.5|1|True|"), 11, u"the number of an ingredient type"_s, u"1.5"_s},
            {egg("1|a week|True|"), 11, u"a shelf life in days"_s, u"a week"_s},
            {egg("1|1|yes|"), 11, u"True or False for vegetarian"_s, u"yes"_s},
            {egg("1||q"), 11, u"the shelf life of a new ingredient"_s, u"Egg|1||q|"_s},
        };
        for (const auto &[text, line, expected, found] : table) {
            m_interaction->expect(
                {srfErrorText({line, expected, found}, path()), u"Error"_s, Icon::Exclamation});
            QCOMPARE(import(text), Outcome::NotImported);
            QCOMPARE(stored(), u" /  /  /  / "_s);
        }
    }

    void asksAboutATakenTitle()
    {
        for (const QByteArray name : {"Éclair", "Baba's \"Nudeln\"", "100% *?_ soup", " a\nb "}) {
            const QByteArray text = srf(name, name + "|1|1|True||1\r", name + '\r');
            QCOMPARE(import(text), Outcome::Imported);
            expectQuestion(QString::fromUtf8(name), Button::Yes);
            QCOMPARE(import(text), Outcome::Imported);
        }
        expectQuestion(u"éCLAIR"_s, Button::No);
        QCOMPARE(import(srf("éCLAIR")), Outcome::NotImported);
        expectQuestion(u"éCLAIR"_s, Button::Yes);
        QCOMPARE(import(srf("éCLAIR")), Outcome::Imported);
        QVERIFY(titles().startsWith(u"Éclair, Éclair 1, "_s) && titles().endsWith(u"éCLAIR 2"_s));
        QCOMPARE(
            m_file->stored("SELECT (SELECT count(*) FROM Ingredients), count(*) FROM Utensils"),
            u"4|4"_s);
    }

    void aBatchKeepsTheGoodFiles()
    {
        m_file->write(u"CREATE TRIGGER no BEFORE INSERT ON Utensils WHEN new.UtensilName = 'bad' "
                      "BEGIN SELECT raise(ABORT, 'no'); END"_s);
        m_importer->batch([this] {
            import(srf("One", {}, "Pot\r"));
            QCOMPARE(titles(), u""_s); // not yet committed
            import(srf("Two", {}, "Pot\r"));
            QVERIFY_THROWS_EXCEPTION(DatabaseError,
                                     import(srf("Four", "Salt|1|1|1||\r", "Pan\rbad\r")));
            QCOMPARE(titles(), u"One, Two"_s);
            // Nothing is left in the cursors either: the next import makes the catalog rows anew.
            import(srf("Five", "Salt|1|1|1||\r", "Pan\r"));
        });
        QCOMPARE(titles(), u"One, Two, Five"_s);
        QCOMPARE(m_file->stored("SELECT UtensilName FROM Utensils, Ingredients"), u"Pot, Pan"_s);
    }

    // Another program takes the first free name while the question stands.
    void locksNothingWhileAsking()
    {
        struct Meanwhile : MockInteraction {
            RecipeFile *file = nullptr;
            Button show(const MessageBox &) override
            {
                file->write(u"INSERT INTO Recipes (RecipeName) VALUES ('soup 1')"_s);
                return Button::Yes;
            }
        };
        Meanwhile interaction;
        interaction.file = m_file.get();
        openImporter(interaction);
        m_importer->batch([this] {
            import(srf("Soup"));
            import(srf("Soup"));
        });
        QCOMPARE(titles(), u"Soup, soup 1, Soup 2"_s);
        m_importer.reset();
    }

    void seesWhatOthersHaveWritten()
    {
        import(srf("Soup", "Salt|3|999|True||\r"));
        m_file->write(u"DELETE FROM Recipes; UPDATE Ingredients SET IngredientName = 'Pepper'"_s);
        QCOMPARE(import(srf("Soup", "Salt|3|999|True||\r")), Outcome::Imported);
        QCOMPARE(m_file->stored("SELECT IngredientName FROM Ingredients"), u"Pepper, Salt"_s);
    }
};

QTEST_GUILESS_MAIN(TestFrmImportRecipe)
#include "tst_frmimportrecipe.moc"
