#include "data/DatabasePath.h"
#include "import/frmImportRecipe.h"
#include "platform/Paths.h"
#include "support/FileBytes.h"
#include "support/MockInteraction.h"
#include "support/RecipeFile.h"
#include "support/Rows.h"
#include "support/SrfText.h"

using namespace Qt::Literals::StringLiterals;

using Outcome = frmImportRecipe::Outcome;

class tst_frmImportRecipe : public QObject
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

    // The rows of all tables, table by table.
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
        QCOMPARE(m_file->stored("SELECT count(*) FROM RecipeIngredients"), u"200000"_s);
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
        m_interaction->expect(
            {srfErrorText({line, expected, found}, path()), u"Error"_s, Icon::Exclamation});
        QCOMPARE(import(srf(text)), Outcome::NotImported);
        QCOMPARE(stored(), u" /  /  /  / "_s);
    }

    void takenTitles_data()
    {
        addRows<QByteArray>({{"accent", "Éclair"},
                             {"quotes", "Baba's \"Nudeln\""},
                             {"pattern characters", "100% *?_ soup"},
                             {"spaces and a line feed", " a\nb "}});
    }

    // The names of the catalogs are found again as well.
    void takenTitles()
    {
        const auto [title] = fetchRow<QByteArray>();
        const QString name = QString::fromUtf8(title);
        const QByteArray text =
            srf({.title = title, .ingredients = {title + "|1|1|True||1"}, .utensils = {title}});
        QCOMPARE(import(text), Outcome::Imported);
        expectQuestion(name, Button::No);
        QCOMPARE(import(text), Outcome::NotImported);
        expectQuestion(name, Button::Yes);
        QCOMPARE(import(text), Outcome::Imported);
        QCOMPARE(titles(), u"%1, %1 1"_s.arg(name));
        QCOMPARE(
            m_file->stored("SELECT (SELECT count(*) FROM Ingredients), count(*) FROM Utensils"),
            u"1|1"_s);
    }

    void takenTitleInOtherCase()
    {
        import(srf({.title = "Éclair"}));
        import(srf({.title = "ÉCLAIR 1"}));
        expectQuestion(u"éCLAIR"_s, Button::Yes);
        QCOMPARE(import(srf({.title = "éCLAIR"})), Outcome::Imported);
        QCOMPARE(titles(), u"Éclair, ÉCLAIR 1, éCLAIR 2"_s);
    }

    void aBatchKeepsTheGoodFiles()
    {
        m_file->write(u"CREATE TRIGGER no BEFORE INSERT ON Utensils WHEN new.UtensilName = 'bad' "
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
        QCOMPARE(titles(), u"One, Two, Five"_s);
        QCOMPARE(m_file->stored("SELECT UtensilName FROM Utensils, Ingredients"), u"Pot, Pan"_s);
    }

    // Another program takes the first free name while the question is shown.
    void locksNothingWhileAsking()
    {
        struct WritingInteraction : MockInteraction {
            RecipeFile *file = nullptr;
            Button show(const MessageBox &) override
            {
                file->write(u"INSERT INTO Recipes (RecipeName) VALUES ('soup 1')"_s);
                return Button::Yes;
            }
        };
        WritingInteraction interaction;
        interaction.file = m_file.get();
        openImporter(interaction);
        m_importer->batch([this] {
            import(srf({}));
            import(srf({}));
        });
        QCOMPARE(titles(), u"Soup, soup 1, Soup 2"_s);
        m_importer.reset();
    }

    void seesWhatOthersHaveWritten()
    {
        const QByteArray salted = srf({.ingredients = {"Salt|3|999|True||"}});
        import(salted);
        m_file->write(u"DELETE FROM Recipes; UPDATE Ingredients SET IngredientName = 'Pepper'"_s);
        QCOMPARE(import(salted), Outcome::Imported);
        QCOMPARE(m_file->stored("SELECT IngredientName FROM Ingredients"), u"Pepper, Salt"_s);
    }
};

QTEST_GUILESS_MAIN(tst_frmImportRecipe)
#include "tst_frmimportrecipe.moc"
