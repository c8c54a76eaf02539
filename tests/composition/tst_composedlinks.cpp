#include "catalogs/frmIngredient.h"
#include "composition/ComposingFixture.h"
#include "data/Database.h"
#include "support/Rows.h"

#include <sqlite3.h>

namespace {

MessageBox missing()
{
    return WindowFixture::warning(u"These ingredients are not in the catalog any more:\n\n"
                                  "Cook's spice (as much as a large spoon holds)\n\nNothing was "
                                  "stored. Add them to the catalog again with Add Ingredient, "
                                  "or remove their lines."_s,
                                  u"Can't save"_s);
}

} // namespace

// The links that Done stores while another window or program changes the catalog.
class tst_ComposedLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void links_data()
    {
        const QByteArray renamed =
            "UPDATE Ingredients SET IngredientName = 'Spice' WHERE IngredientID = 4;";
        const QByteArray deleted = "DELETE FROM Ingredients WHERE IngredientID = 4;";
        const QByteArray doubled = "INSERT INTO Ingredients VALUES (6, 'COOK''S spice', 0, 0, 1);";
        // Changes before and after the editor is opened, and the keys stored, none if Done is
        // refused.
        addRows<QByteArray, QByteArray, QString>({
            {"renamed", QByteArray(), renamed, u"2, 4"_s},
            {"renamed, the name used again", QByteArray(), renamed + doubled, u"2, 4"_s},
            {"deleted", QByteArray(), deleted, u""_s},
            {"deleted, the name used again", QByteArray(), deleted + doubled, u"2, 6"_s},
            {"doubled names, the second linked",
             doubled + "UPDATE RecipeIngredients SET IngredientID = 6 WHERE IngredientID = 4",
             QByteArray(), u"2, 6"_s},
            {"a link to nothing",
             QByteArray("INSERT INTO RecipeIngredients (rowid, RecipeID, IngredientID, Quantity)"
                        " VALUES (-5, 17, 77, 'gone')"),
             QByteArray(), u"2, 4"_s},
        });
    }
    // Done links the lines to the ingredients that they were linked to.
    void links()
    {
        const auto [before, after, stored] = fetchRow<QByteArray, QByteArray, QString>();
        WindowFixture fixture(dishes + before);
        const auto &editor = compose<frmChangeIngredients>(fixture);
        if (!after.isEmpty())
            fixture.sql(after);
        const QString old = fixture.stored(allIngredients);
        if (stored.isEmpty())
            fixture.interaction.expect(missing());
        fixture.perform(editor, u"cmdDone"_s);
        if (stored.isEmpty())
            QCOMPARE(fixture.stored(allIngredients), old);
        else
            QCOMPARE(fixture.stored("SELECT IngredientID FROM RecipeIngredients"
                                    " WHERE RecipeID = 17 ORDER BY rowid"),
                     stored);
    }

    // A renamed ingredient keeps its line, and is not added a second time.
    void addsARenamedIngredientOnce()
    {
        WindowFixture fixture(dishes);
        const auto &editor = compose<frmChangeIngredients>(fixture);
        fixture.perform(editor, u"cmdAddIngredient"_s);
        const auto &catalog = *fixture.frame.find<frmIngredient>();
        fixture.perform(catalog, u"lstIngredients 2, txtIngredient =Spice, cmdSave, cmdDone"_s);
        fixture.interaction.expect(WindowFixture::warning(
            u"Ingredient is already in the ingredient box"_s, u"Can't add"_s));
        fixture.perform(editor, u"lstIngredients 3, cmdAdd, cmdDone"_s);
        QCOMPARE(fixture.stored(allIngredients),
                 u"18|3|1 cup, 17|2|1 (large) can, 17|4|as much as a large spoon holds"_s);
    }

    // The lines' keys are found when the catalog can be read, and not before.
    void unreadCatalog()
    {
        WindowFixture fixture(dishes);
        const auto database = Database::open(fixture.file.path(), std::chrono::milliseconds(10));
        fixture.frame.load<frmRecipe>().setCurrentRecipeID(17);
        fixture.open<frmRecipe>();
        SQLite::Database other = fixture.file.other();
        auto &editor = fixture.frame.load<frmChangeIngredients>();
        other.exec("BEGIN EXCLUSIVE");
        fixture.interaction.expect(WindowFixture::failure(
            u"Change Ingredients"_s, lockedText(fixture.file, DatabaseError::Operation::Reading)));
        fixture.frame.show(editor);
        QCoreApplication::processEvents();
        fixture.interaction.checkAllCame();
        const auto &add = control<QPushButton>(editor, u"cmdAdd"_s);
        const auto &list = control<ListBox>(editor, u"lstIngredients"_s);
        QVERIFY(!add.isEnabled());
        QVERIFY(list.accessibleDescription().startsWith("The catalog could not be read."_L1));
        other.exec("ROLLBACK");
        fixture.perform(editor, u"cmdAddIngredient"_s);
        fixture.perform(*fixture.frame.find<frmIngredient>(), u"cmdDone"_s);
        QVERIFY(add.isEnabled() && list.accessibleDescription().isEmpty());
        fixture.perform(editor, u"cmdDone"_s);
        QCOMPARE(fixture.stored(allIngredients),
                 u"18|3|1 cup, 17|2|1 (large) can, 17|4|as much as a large spoon holds"_s);
    }

    void refusesDone_data()
    {
        addRows<QByteArray, QByteArray, MessageBox>({
            {"not in the catalog", QByteArray("DELETE FROM Ingredients WHERE IngredientID = 4"),
             QByteArray("INSERT INTO Ingredients VALUES (4, 'COOK''S SPICE', 0, 0, 1)"), missing()},
            {"recipe deleted", QByteArray("UPDATE Recipes SET RecipeID = -17 WHERE RecipeID = 17"),
             QByteArray("UPDATE Recipes SET RecipeID = 17 WHERE RecipeID = -17"),
             WindowFixture::failure(
                 u"Change Ingredients"_s,
                 u"This recipe has been deleted by another program. Nothing was stored."_s)},
            {"database error",
             QByteArray("CREATE TRIGGER t BEFORE INSERT ON RecipeIngredients"
                        " WHEN NEW.IngredientID = 4 BEGIN SELECT RAISE(ABORT, 'no more'); END"),
             QByteArray("DROP TRIGGER t"),
             WindowFixture::failure(u"Change Ingredients"_s,
                                    u"The recipe database %1 could not be used: no more"_s)},
        });
    }
    // Nothing is stored, and Done works when the cause is repaired.
    void refusesDone()
    {
        auto [cause, repair, box] = fetchRow<QByteArray, QByteArray, MessageBox>();
        WindowFixture fixture(dishes);
        const auto &editor = compose<frmChangeIngredients>(fixture);
        fixture.sql(cause);
        box.text.replace(u"%1"_s, fixture.file.path());
        fixture.interaction.expect(box);
        press(editor, u"cmdDone"_s);
        fixture.interaction.checkAllCame();
        QCOMPARE(fixture.stored(allIngredients), oldLinks);
        fixture.sql(repair);
        press(editor, u"cmdDone"_s);
        QCOMPARE(fixture.stored(allIngredients),
                 u"18|3|1 cup, 17|2|1 (large) can, 17|4|as much as a large spoon holds"_s);
    }
};

QTEST_MAIN(tst_ComposedLinks)
#include "tst_composedlinks.moc"
