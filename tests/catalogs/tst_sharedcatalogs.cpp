#include "catalogs/CatalogFixture.h"
#include "support/FormText.h"
#include "support/Rows.h"
#include "support/TemporaryHome.h"

namespace {

// Whether nothing is drawn in the list: no row and no placeholder text.
bool isBlank(ListBox &list)
{
    const QImage image = list.viewport()->grab().toImage();
    QImage background = image;
    background.fill(image.pixelColor(0, 0));
    return image == background;
}

} // namespace

// Catalogs in a file that another program reads or writes.
class tst_SharedCatalogs : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // with no settings yet

private Q_SLOTS:
    void anotherProgram_data()
    {
        // What the user does, what another program does before Save, and rows 1, 5 and later then.
        addRows<QString, QByteArray, QString, QString>({
            {"adds the name", u"cmdNew, txtIngredient basil"_s,
             QByteArray("INSERT INTO Ingredients VALUES (5, 'Basil', 3, 9, 1)"),
             u"1|Salt|3|999|1, 5|Basil|3|9|1"_s, u"Éclair, Apple, Basil, Salt, beef"_s},
            {"changes the other fields", u"lstIngredients 2, txtIngredient =Sea salt"_s,
             QByteArray("UPDATE Ingredients SET IngredientType = 7, ShelfLife = 5, Vegetarian = 0"
                        " WHERE IngredientID = 1"),
             u"1|Sea salt|7|5|0"_s, u"Éclair, Apple, beef, Sea salt"_s},
            {"changes the name", u"lstIngredients 2, cmbType 4, txtShelfLife =1, chkVegetarian"_s,
             QByteArray("UPDATE Ingredients SET IngredientName = 'Rock' WHERE IngredientID = 1"),
             u"1|Rock|4|1|0"_s, u"Éclair, Apple, beef, Rock"_s},
            {"nulls", u"lstIngredients 2, txtIngredient x"_s,
             QByteArray("UPDATE Ingredients SET IngredientType = NULL, Vegetarian = NULL"
                        " WHERE IngredientID = 1"),
             u"1|Saltx|3|999|1"_s, u"Éclair, Apple, Saltx, beef"_s},
        });
    }
    // Only what the user has changed is stored, and no name twice.
    void anotherProgram()
    {
        const auto [steps, others, stored, listed] =
            fetchRow<QString, QByteArray, QString, QString>();
        CatalogFixture catalog;
        catalog.perform(steps);
        catalog.sql(others);
        catalog.perform(u"cmdSave"_s);
        QCOMPARE(catalog.WindowFixture::stored(
                     "SELECT * FROM Ingredients WHERE IngredientID NOT IN (2, 3, 4) ORDER BY 1"),
                 stored);
        QCOMPARE(catalog.list.texts().join(u", "_s), listed);
        if (steps.startsWith("cmdNew"_L1)) // the selection and the fields are kept
            QCOMPARE(catalog.list.selectedText() + catalog.name.text(), u"Éclairbasil"_s);
    }

    void anotherProgramAddsAUtensil()
    {
        CatalogFixture catalog(pantry, true);
        catalog.perform(u"cmdNew, txtUtensilName =pot"_s);
        catalog.sql("INSERT INTO Utensils VALUES (3, 'Pot')");
        catalog.perform(u"cmdSave"_s);
        QCOMPARE(catalog.stored(), u"1|Whisk, 2|pan, 3|Pot"_s);
    }

    // If a commit fails, the new row is still a new one.
    void triesAFailedCommitAgain()
    {
        CatalogFixture catalog;
        catalog.perform(u"cmdNew, txtIngredient Dill"_s);
        {
            SQLite::Database other = catalog.file.other();
            SQLite::Statement reading(other, "SELECT * FROM Ingredients");
            reading.executeStep(); // a commit must wait for it
            catalog.expectLocked(DatabaseError::Operation::Writing);
            catalog.perform(u"cmdSave"_s);
        }
        catalog.perform(u"cmdSave"_s);
        QCOMPARE(catalog.stored().section(u", "_s, 4), u"5|Dill|0|0|0"_s);
    }

    // A window that has not been activated, or whose table could not be read, does not say that
    // there are no ingredients, and stores none.
    void unreadTable()
    {
        CatalogFixture fixture(pantry, true);
        auto &window = fixture.open<frmIngredient>(); // thrown back by the utensils
        auto &list = control<ListBox>(window, u"lstIngredients"_s);
        QCOMPARE(fixture.beeps, 1);
        QVERIFY(isBlank(list));

        SQLite::Database other = fixture.file.other();
        for (const bool isFirst : {true, false}) {
            other.exec("BEGIN EXCLUSIVE");
            fixture.expectLocked(DatabaseError::Operation::Reading);
            if (isFirst)
                fixture.perform(u"cmdDone"_s);
            else
                fixture.open<frmUtensil>(); // thrown back: the ingredients are activated again
            fixture.interaction.checkAllCame();
            QVERIFY(list.hasFocus());
            const QString form = formText(window);
            QCOMPARE(form.count(u"disabled"_s), 9); // all but the list and Done
            QCOMPARE(WindowFixture::shown(window), u"Ingredients||||no"_s);
            QVERIFY(form.endsWith(u"cmdDone: D&one"_s));
            control<QPushButton>(window, u"cmdDone"_s).setFocus(); // the focus marks the list
            QVERIFY(!isBlank(list));
            other.exec("ROLLBACK");
            fixture.open<frmUtensil>();
            QCOMPARE(list.texts().size(), 4);
        }
        static_cast<WindowFixture &>(fixture).perform(window,
                                                      u"cmdNew, txtIngredient Dill, cmdSave"_s);
        QCOMPARE(fixture.WindowFixture::stored("SELECT * FROM Ingredients WHERE IngredientID > 4"),
                 u"5|Dill|0|0|0"_s);
    }

    // An entry that cannot be read is not shown, nor the one before it.
    void unreadEntry()
    {
        CatalogFixture catalog;
        catalog.sql("CREATE TRIGGER t BEFORE UPDATE ON Ingredients"
                    " BEGIN SELECT RAISE(ABORT, 'no'); END");
        catalog.interaction.expect(WindowFixture::failure(
            u"Ingredients"_s, sqliteText(catalog.file, SQLITE_CONSTRAINT, u"no"_s)));
        catalog.perform(u"lstIngredients 1, txtIngredient =Apricot, cmdSave"_s); // drops the rows
        SQLite::Database other = catalog.file.other();
        other.exec("DROP TRIGGER t; BEGIN EXCLUSIVE");
        catalog.expectLocked(DatabaseError::Operation::Reading);
        catalog.perform(u"lstIngredients 2"_s);
        QCOMPARE(catalog.shown(), u"Ingredients||||no"_s);
        QVERIFY(catalog.list.accessibleDescription().startsWith(
            "The ingredients could not be read."_L1));
        QVERIFY(!catalog.save.isEnabled());
        other.exec("ROLLBACK");
        catalog.open<frmIngredient>();
        QCOMPARE(catalog.shown(), u"Ingredients|Éclair|Misc|1|yes"_s);
    }

    void failures_data()
    {
        const QByteArray deleted = "DELETE FROM Ingredients WHERE IngredientID = 2";
        const QString deletedText =
            u"This entry has been deleted by another program. Nothing was stored."_s;
        // The last value is the name shown after the failure.
        addRows<QByteArray, QString, QString, QString>({
            {"save a deleted row", deleted, u"cmdSave"_s, deletedText, u"Éclair"_s},
            {"delete a deleted row", deleted, u"cmdDelete"_s, deletedText, u"Éclair"_s},
            {"database error",
             QByteArray("CREATE TRIGGER t BEFORE UPDATE ON Ingredients"
                        " BEGIN SELECT RAISE(ABORT, 'the pantry is locked'); END"),
             u"cmdSave"_s, u"The recipe database %1 could not be used: the pantry is locked"_s,
             u"Apricot"_s},
        });
    }
    // If the row is gone, the window shows the table as it is now; otherwise the edits are kept.
    void failures()
    {
        const auto [cause, button, text, shown] = fetchRow<QByteArray, QString, QString, QString>();
        CatalogFixture catalog;
        catalog.perform(u"lstIngredients 1, txtIngredient =Apricot"_s);
        catalog.sql(cause);
        const QString stored = catalog.stored();
        if (button == "cmdDelete"_L1)
            catalog.expectQuestion(catalog.window, button, u"Yes"_s);
        catalog.interaction.expect(WindowFixture::failure(
            u"Ingredients"_s, QString(text).replace(u"%1"_s, catalog.file.path())));
        catalog.perform(button);
        QCOMPARE(catalog.stored(), stored);
        QCOMPARE(catalog.name.text(), shown);
        QCOMPARE(catalog.save.isEnabled(), shown == "Apricot"_L1);
    }
};

QTEST_MAIN(tst_SharedCatalogs)
#include "tst_sharedcatalogs.moc"
