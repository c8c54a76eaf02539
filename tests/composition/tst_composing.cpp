#include "catalogs/frmIngredient.h"
#include "catalogs/frmUtensil.h"
#include "composition/ComposedRecipe.h"
#include "composition/frmChangeIngredients.h"
#include "composition/frmChangeUtensils.h"
#include "data/Database.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"
#include "support/FormText.h"
#include "support/WindowFixture.h"
#include "widgets/ListBox.h"

#include <sqlite3.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray dishes =
    "INSERT INTO Recipes (RecipeID, RecipeName) VALUES (17, 'Utensils'), (18, 'Stew');"
    "INSERT INTO Ingredients VALUES (1, 'Salt', 0, 0, 1), (2, 'Beans (white)', 0, 0, 1),"
    "(3, 'Beans', 0, 0, 1), (4, 'Cook''s spice', 0, 0, 1);"
    "INSERT INTO RecipeIngredients VALUES (17, 2, '1 (large) can'), (18, 3, '1 cup'),"
    "(17, 4, 'as much as a large spoon holds');"
    "INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'Large pot'), (3, 'Knife');"
    "INSERT INTO RecipeUtensils VALUES (17, 1), (18, 3);";
constexpr auto allIngredients = "SELECT * FROM RecipeIngredients ORDER BY rowid";
constexpr auto oldLinks = u"17|2|1 (large) can, 18|3|1 cup, 17|4|as much as a large spoon holds";

// The record window and an editor on its recipe.
template <class Editor>
Editor &compose(WindowFixture &fixture)
{
    fixture.frame.load<frmRecipe>().setCurrentRecipeID(17);
    fixture.open<frmRecipe>();
    return fixture.open<Editor>();
}

MessageBox noneSelected(const QString &box, const QString &act)
{
    return WindowFixture::warning(
        u"No item was selected in the %1 box.  Try selecting the item you want "
        "to %2 and then hit %2 again"_s.arg(box, act),
        u"No item selected"_s);
}

MessageBox missing()
{
    return WindowFixture::warning(u"These ingredients are not in the catalog any more:\n\n"
                                  "Cook's spice (as much as a large spoon holds)\n\nNothing was "
                                  "stored. Add them to the catalog again with Add Ingredient, "
                                  "or remove their lines."_s,
                                  u"Can't save"_s);
}

} // namespace

class tst_Composing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opens_data()
    {
        QTest::addColumn<QByteArray>("rows");
        QTest::addColumn<bool>("utensils");
        QTest::addColumn<QString>("form");
        const QString add = u"cmdAdd: &Add\ncmdRemove: &Remove\n"_s;
        const QString leave = u"cmdCancel: &Cancel\ncmdDone: D&one"_s;
        const QString combos =
            u"cmbAmount: , 1/8, 1/4, 1/3, 1/2, 2/3, 3/4, *1, 1 1/4, 1 1/2, 1 3/4, 2, 2 1/2, 3, "
            "3 1/2, 4, 4 1/2, 5, 5 1/2, 6\n"
            "cmbQuantity: , *tsp, tbsp, cup, ml, L, oz, fl oz, quart, gram, kilogram, lb, pinch, "
            "handfull, dash, sprig, clove\n"
            "cmbPreperation: *, chopped, diced, sliced, cubed, ground, minced, grated\n"_s;
        const QString labels =
            u"Change Ingredients, In the recipe, In the catalog, Amount, Unit, Preparation\n"_s;
        const QString lines = u"\nlstRecipeIngredients: "_s;
        const QString addIngredient = u"cmdAddIngredient: A&dd Ingredient\n"_s;
        QTest::newRow("ingredients")
            << dishes << false
            << labels + u"> lstIngredients: *Beans, Beans (white), Cook's spice, Salt\n"_s + combos
                + add + addIngredient + leave + lines
                + u"*Beans (white) (1 (large) can), "
                  "Cook's spice (as much as a large spoon holds)"_s;
        QTest::newRow("no ingredients")
            << dishes + "DELETE FROM RecipeIngredients; DELETE FROM Ingredients" << false
            << labels + u"> lstIngredients: \n"_s + combos + add + addIngredient + leave + lines;
        QTest::newRow("utensils")
            << dishes << true
            << u"Change Untensils, In the recipe, In the catalog\nlstRecipeUtensils: Whisk\n"
               "> lstUtensils: Knife, Large pot, Whisk\n"_s
                + add + u"cmdAddUtensil: A&dd Utensil\n"_s + leave;
    }
    void opens()
    {
        QFETCH(QByteArray, rows);
        QFETCH(bool, utensils);
        WindowFixture fixture(rows);
        const ChildWindow &editor = utensils
            ? static_cast<ChildWindow &>(compose<frmChangeUtensils>(fixture))
            : compose<frmChangeIngredients>(fixture);
        QTEST(formText(editor), "form");
    }

    void adds_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("line");
        QTest::newRow("as opened") << u""_s << u"Salt (1 tsp)"_s;
        QTest::newRow("chosen") << u"cmbAmount 12, cmbQuantity 3, cmbPreperation 2"_s
                                << u"Salt (2 1/2 cup diced)"_s;
        QTest::newRow("typed") << u"cmbAmount =a few, cmbQuantity 2, cmbPreperation =torn"_s
                               << u"Salt (a few tbsp torn)"_s;
        QTest::newRow("nothing") << u"cmbAmount 0, cmbQuantity 0"_s << u"Salt ()"_s;
        QTest::newRow("preparation alone")
            << u"cmbAmount 0, cmbQuantity 0, cmbPreperation 1"_s << u"Salt (chopped)"_s;
    }
    void adds()
    {
        QFETCH(QString, steps);
        QFETCH(QString, line);
        WindowFixture fixture(dishes);
        const auto &editor = compose<frmChangeIngredients>(fixture);
        fixture.perform(editor, steps + u", lstIngredients 3, cmdAdd"_s);
        QCOMPARE(control<ListBox>(editor, u"lstRecipeIngredients"_s).texts().last(), line);
        QCOMPARE(control<ListBox>(editor, u"lstIngredients"_s).selectedText(), u"Salt"_s);
    }

    void keysAndMouse_data()
    {
        QTest::addColumn<bool>("utensils");
        QTest::addColumn<QString>("control");
        QTest::addColumn<int>("input"); // a key or a mouse button, which clicks twice
        QTest::addColumn<QString>("lines"); // what they are then, or "stored" or "cancelled"
        const QString catalog[] = {u"lstIngredients"_s, u"lstUtensils"_s};
        const QString recipe[] = {u"lstRecipeIngredients"_s, u"lstRecipeUtensils"_s};
        const QString lines[] = {
            u"Beans (white) (1 (large) can), Cook's spice (as much as a large spoon holds)"_s,
            u"Whisk"_s};
        const QString added[] = {lines[0] + u", Beans (1 tsp)"_s, u"Whisk, Knife"_s};
        const QString removed[] = {lines[0].section(u", "_s, 1), u""_s};
        const QString entered[] = {lines[0], u"stored"_s};
        for (const bool i : {false, true}) {
            const auto row = [i](const char *name) -> QTestData & {
                return QTest::addRow("%s, %s", i ? "utensils" : "ingredients", name) << i;
            };
            row("Enter") << catalog[i] << int(Qt::Key_Return) << entered[i];
            row("Esc") << catalog[i] << int(Qt::Key_Escape) << u"cancelled"_s;
            row("Delete") << recipe[i] << int(Qt::Key_Delete) << removed[i];
            row("Delete in the catalog") << catalog[i] << int(Qt::Key_Delete) << lines[i];
            row("double click") << catalog[i] << int(Qt::LeftButton) << added[i];
            row("right double click") << catalog[i] << int(Qt::RightButton) << lines[i];
            row("double click on a line") << recipe[i] << int(Qt::LeftButton) << lines[i];
        }
    }
    void keysAndMouse()
    {
        QFETCH(bool, utensils);
        QFETCH(QString, control);
        QFETCH(int, input);
        QFETCH(QString, lines);
        WindowFixture fixture(dishes);
        ChildWindow &editor = utensils
            ? static_cast<ChildWindow &>(compose<frmChangeUtensils>(fixture))
            : compose<frmChangeIngredients>(fixture);
        const QPointer<ChildWindow> alive = &editor;
        auto &list = ::control<ListBox>(editor, control);
        const auto &shown = ::control<ListBox>(
            editor, utensils ? u"lstRecipeUtensils"_s : u"lstRecipeIngredients"_s);
        fixture.perform(editor, control + u" 0"_s);
        fixture.sql("DELETE FROM RecipeIngredients; DELETE FROM RecipeUtensils"); // Done stores
        if (input > int(Qt::RightButton)) {
            QTest::keyClick(&list, static_cast<Qt::Key>(input));
        } else {
            const auto button = static_cast<Qt::MouseButton>(input);
            const QPoint row = list.visualRect(list.model()->index(0, 0)).center();
            QTest::mouseClick(list.viewport(), button, {}, row);
            QTest::mouseDClick(list.viewport(), button, {}, row);
        }
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const bool stored = !fixture.stored("SELECT * FROM RecipeUtensils").isEmpty();
        QCOMPARE(alive        ? shown.texts().join(u", "_s)
                     : stored ? u"stored"_s
                              : u"cancelled"_s,
                 lines);
    }

    void focusReturnsToTheList_data()
    {
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("mouse") << true;
        QTest::newRow("keys") << false;
    }
    // After Add Ingredient and Done in the catalog. On Cancel, Enter would drop all lines.
    void focusReturnsToTheList()
    {
        QFETCH(bool, byMouse);
        const auto key = [](const QString &keys) {
            if (QProcess::execute(u"xdotool"_s, {u"key"_s, keys}) != 0)
                qFatal("xdotool failed");
        };
        WindowFixture fixture(dishes);
        auto &editor = compose<frmChangeIngredients>(fixture);
        const auto &list = control<ListBox>(editor, u"lstIngredients"_s);
        QTRY_VERIFY(list.hasFocus());
        control<QWidget>(editor, u"lstRecipeIngredients"_s).setFocus();
        if (byMouse)
            press(editor, u"cmdAddIngredient"_s);
        else
            key(u"alt+d"_s);
        QTRY_VERIFY(fixture.frame.find<frmIngredient>());
        QTRY_COMPARE(fixture.frame.activeChild(), fixture.frame.find<frmIngredient>());
        QCoreApplication::processEvents();
        key(u"alt+o"_s);
        QTRY_COMPARE(fixture.frame.activeChild(), &editor);
        QTRY_VERIFY(list.hasFocus());
        key(u"Return"_s);
        key(u"Down"_s);
        QTRY_COMPARE(list.selectedText(), u"Beans (white)"_s);
    }

    void showsWhichListHasTheFocus_data()
    {
        QTest::addColumn<QByteArray>("rows");
        QTest::newRow("with rows") << dishes;
        QTest::newRow("empty") << dishes + "DELETE FROM RecipeIngredients; DELETE FROM Ingredients";
    }
    void showsWhichListHasTheFocus()
    {
        QFETCH(QByteArray, rows);
        WindowFixture fixture(rows);
        const auto &editor = compose<frmChangeIngredients>(fixture);
        for (const QString &name : {u"lstIngredients"_s, u"lstRecipeIngredients"_s}) {
            auto &list = control<ListBox>(editor, name);
            const auto selection = [&list] {
                const QImage image = list.viewport()->grab().toImage();
                return list.count() > 0 ? image.copy(image.width() - 5, 5, 1, 1) : image;
            };
            list.setFocus();
            const QImage focused = selection();
            control<QWidget>(editor, u"cmdDone"_s).setFocus();
            QVERIFY2(selection() != focused, qUtf8Printable(name));
        }
    }

    void links_data()
    {
        QTest::addColumn<QByteArray>("before"); // the editor is opened
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("stored"); // keys; or nothing if Done is refused
        const QByteArray renamed =
            "UPDATE Ingredients SET IngredientName = 'Spice' WHERE IngredientID = 4;";
        const QByteArray deleted = "DELETE FROM Ingredients WHERE IngredientID = 4;";
        const QByteArray doubled = "INSERT INTO Ingredients VALUES (6, 'COOK''S spice', 0, 0, 1);";
        QTest::newRow("renamed") << QByteArray() << renamed << u"2, 4"_s;
        QTest::newRow("renamed, the name used again")
            << QByteArray() << renamed + doubled << u"2, 4"_s;
        QTest::newRow("deleted") << QByteArray() << deleted << u""_s;
        QTest::newRow("deleted, the name used again")
            << QByteArray() << deleted + doubled << u"2, 6"_s;
        QTest::newRow("doubled names, the second linked")
            << doubled + "UPDATE RecipeIngredients SET IngredientID = 6 WHERE IngredientID = 4"
            << QByteArray() << u"2, 6"_s;
        QTest::newRow("a link to nothing")
            << QByteArray("INSERT INTO RecipeIngredients (rowid, RecipeID, IngredientID, Quantity)"
                          " VALUES (-5, 17, 77, 'gone')")
            << QByteArray() << u"2, 4"_s;
    }
    // Done links the lines to the ingredients that they were linked to.
    void links()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QString, stored);
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
            u"Change Ingredients"_s,
            DatabaseError::fromSqlite(fixture.file.path(), SQLITE_BUSY, {}).text()));
        fixture.frame.show(editor);
        QCoreApplication::processEvents();
        fixture.interaction.checkAllCame();
        other.exec("ROLLBACK");
        fixture.perform(editor, u"cmdDone"_s);
        QCOMPARE(fixture.stored(allIngredients),
                 u"18|3|1 cup, 17|2|1 (large) can, 17|4|as much as a large spoon holds"_s);
    }

    void ingredients()
    {
        WindowFixture fixture(dishes);
        const auto &editor = compose<frmChangeIngredients>(fixture);
        auto &lines = control<ListBox>(editor, u"lstRecipeIngredients"_s);
        auto &catalog = control<ListBox>(editor, u"lstIngredients"_s);
        auto &amount = control<QComboBox>(editor, u"cmbAmount"_s);
        const QString first = u"Beans (white) (1 (large) can)"_s;
        const QString second = u"Cook's spice (as much as a large spoon holds)"_s;

        fixture.perform(editor, u"cmdAdd, lstIngredients 1"_s);
        fixture.interaction.expect(WindowFixture::warning(
            u"Ingredient is already in the ingredient box"_s, u"Can't add"_s));
        fixture.perform(editor, u"cmdAdd"_s);
        QVERIFY(catalog.hasFocus());
        amount.setFocus();
        amount.lineEdit()->selectAll();
        QTest::keyClicks(&amount, u"1/"_s); // must not be completed to 1/8
        QTest::keyClick(&amount, Qt::Key_Return);
        control<QComboBox>(editor, u"cmbQuantity"_s).setCurrentText(u"tbsp"_s);
        control<QComboBox>(editor, u"cmbPreperation"_s).setCurrentText(u"ground"_s);
        const QPoint salt = catalog.visualRect(catalog.model()->index(3, 0)).center();
        QTest::mouseClick(catalog.viewport(), Qt::LeftButton, {}, salt);
        QTest::mouseDClick(catalog.viewport(), Qt::LeftButton, {}, salt);
        QCOMPARE(lines.texts(),
                 QStringList({first, second, u"Beans (1 tsp)"_s, u"Salt (1/ tbsp ground)"_s}));
        lines.setFocus();
        QTest::keyClick(&lines, Qt::Key_Delete);
        QCOMPARE(lines.selectedText(), second);
        QVERIFY(catalog.hasFocus());

        fixture.perform(editor, u"cmdAddIngredient"_s);
        fixture.perform(*fixture.frame.find<frmIngredient>(),
                        u"cmdNew, txtIngredient Basil, cmdSave, cmdDone"_s);
        QCOMPARE(fixture.frame.activeChild(), &editor);
        QCOMPARE(catalog.selectedText(), u"Basil"_s); // first, since it has no type
        for (auto *combo : editor.findChildren<QComboBox *>())
            combo->setCurrentIndex(0);
        auto &recipe = *fixture.frame.find<frmRecipe>();
        recipe.setCurrentRecipeID(18); // the editor stores for its own recipe
        fixture.perform(editor, u"cmdAdd, cmdDone"_s);
        QVERIFY(!fixture.frame.find<frmChangeIngredients>());
        QCOMPARE(fixture.stored(allIngredients),
                 u"18|3|1 cup, 17|4|as much as a large spoon holds, 17|3|1 tsp, "
                 "17|1|1/ tbsp ground, 17|5|"_s);
        QCOMPARE(fixture.frame.activeChild(), &recipe);
        QCOMPARE(recipe.ingredientLines().size(), 1);
    }

    void utensils()
    {
        WindowFixture fixture(dishes);
        const auto &editor = compose<frmChangeUtensils>(fixture);
        auto &lines = control<ListBox>(editor, u"lstRecipeUtensils"_s);
        auto &catalog = control<ListBox>(editor, u"lstUtensils"_s);
        QVERIFY(catalog.hasFocus());
        fixture.interaction.expect(noneSelected(u"utensils"_s, u"add"_s));
        fixture.interaction.expect(noneSelected(u"recipe utensils"_s, u"delete"_s));
        fixture.perform(editor, u"cmdAdd, cmdRemove, lstUtensils 0, cmdAdd"_s);
        fixture.interaction.expect(
            WindowFixture::warning(u"Utensil is already in the utensil box"_s, u"Can't add"_s));
        fixture.perform(editor, u"cmdAdd"_s);
        QCOMPARE(lines.texts(), QStringList({u"Whisk"_s, u"Knife"_s}));
        fixture.perform(editor, u"lstRecipeUtensils 0, cmdRemove"_s);
        QCOMPARE(lines.selectedRow(), -1);

        // The catalog keeps the focus while the editor is activated once.
        fixture.perform(editor, u"cmdAddUtensil"_s);
        const auto &utensils = *fixture.frame.find<frmUtensil>();
        fixture.perform(utensils, u"cmdNew, txtUtensilName Axe, cmdSave"_s);
        fixture.open<frmRecipes>();
        QCOMPARE(fixture.frame.activeChild(), &utensils);
        QVERIFY(utensils.isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(catalog.texts().first(), u"Axe"_s);
        fixture.perform(utensils, u"cmdDone"_s);
        QTest::keyClick(&catalog, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(fixture.stored("SELECT * FROM RecipeUtensils ORDER BY rowid"), u"18|3, 17|3"_s);
        QCOMPARE(fixture.frame.find<frmRecipe>()->utensilLines(), QStringList(u"Knife"_s));
    }

    void anEmptyList()
    {
        WindowFixture fixture(dishes
                              + "DELETE FROM RecipeIngredients WHERE RecipeID = 17;"
                                "DELETE FROM Ingredients");
        const auto &editor = compose<frmChangeIngredients>(fixture);
        fixture.interaction.expect(noneSelected(u"ingredients"_s, u"add"_s));
        fixture.interaction.expect(noneSelected(u"recipe ingredients"_s, u"delete"_s));
        fixture.perform(editor, u"cmdAdd, cmdRemove"_s);
        fixture.sql("INSERT INTO RecipeIngredients VALUES (17, 1, 'late')");
        fixture.perform(editor, u"cmdDone"_s);
        QCOMPARE(fixture.stored(allIngredients), u"18|3|1 cup"_s);
    }

    void quantity_data()
    {
        QTest::addColumn<QString>("amount");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QString>("preparation");
        QTest::addColumn<QString>("expected");
        QTest::newRow("outer spaces")
            << u"  1  x "_s << u"tsp"_s << u" (fine) "_s << u"1  x  tsp  (fine)"_s;
        QTest::newRow("tab, no unit") << u"\t1"_s << u""_s << u"minced"_s << u"\t1 minced"_s;
        QTest::newRow("cut") << u"123456789012345678901234"_s << u"tsp"_s << u""_s
                             << u"123456789012345678901234 "_s;
        QTest::newRow("cut before a grapheme") << u"123456789012345678901234e\u0301"_s << u""_s
                                               << u""_s << u"123456789012345678901234"_s;
    }
    void quantity()
    {
        QFETCH(QString, amount);
        QFETCH(QString, unit);
        QFETCH(QString, preparation);
        QTEST(quantityText(amount, unit, preparation), "expected");
    }

    void refusesDone_data()
    {
        QTest::addColumn<QByteArray>("cause");
        QTest::addColumn<QByteArray>("repair");
        QTest::addColumn<MessageBox>("box");
        QTest::newRow("not in the catalog")
            << QByteArray("DELETE FROM Ingredients WHERE IngredientID = 4")
            << QByteArray("INSERT INTO Ingredients VALUES (4, 'COOK''S SPICE', 0, 0, 1)")
            << missing();
        QTest::newRow("recipe deleted")
            << QByteArray("UPDATE Recipes SET RecipeID = -17 WHERE RecipeID = 17")
            << QByteArray("UPDATE Recipes SET RecipeID = 17 WHERE RecipeID = -17")
            << WindowFixture::failure(
                   u"Change Ingredients"_s,
                   u"This recipe has been deleted by another program. Nothing was stored."_s);
        QTest::newRow("database error")
            << QByteArray("CREATE TRIGGER t BEFORE INSERT ON RecipeIngredients"
                          " WHEN NEW.IngredientID = 4 BEGIN SELECT RAISE(ABORT, 'no more'); END")
            << QByteArray("DROP TRIGGER t")
            << WindowFixture::failure(u"Change Ingredients"_s,
                                      u"The recipe file %1 could not be used: no more"_s);
    }
    // Nothing is stored, and Done works when the cause is repaired.
    void refusesDone()
    {
        QFETCH(QByteArray, cause);
        QFETCH(QByteArray, repair);
        QFETCH(MessageBox, box);
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

    // After each step: the number of beeps so far, and the active window.
    void activation()
    {
        WindowFixture fixture(dishes);
        const auto &editor = compose<frmChangeIngredients>(fixture);
        fixture.perform(editor, u"cmdRemove"_s); // Cancel drops this at the end
        auto &recipe = *fixture.frame.find<frmRecipe>();
        recipe.parentWidget()->setGeometry(600, 165, 390, 160);
        const std::pair<std::function<void()>, QString> steps[] = {
            {[&] { fixture.open<frmRecipes>(); }, u"1 frmChangeIngredients"_s},
            // This recipe is called "Utensils", as the catalog is.
            {[&] { QTest::mouseClick(&recipe, Qt::LeftButton); }, u"2 frmChangeIngredients"_s},
            {[&] { fixture.open<frmUtensil>(); }, u"2 frmUtensil"_s},
            {[&] { fixture.open<frmIngredient>(); }, u"3 frmUtensil"_s},
            {[&] { press(*fixture.frame.find<frmUtensil>(), u"cmdDone"_s); },
             u"3 frmChangeIngredients"_s},
            {[&] { fixture.open<frmIngredient>(); }, u"3 frmIngredient"_s},
            {[&] { fixture.open<frmRecipe>(); }, u"4 frmIngredient"_s},
            {[&] { press(*fixture.frame.find<frmIngredient>(), u"cmdDone"_s); },
             u"4 frmChangeIngredients"_s},
            {[&] { press(editor, u"cmdCancel"_s); }, u"4 frmRecipe"_s},
        };
        for (const auto &[act, expected] : steps) {
            act();
            QCoreApplication::processEvents();
            const char *active = fixture.frame.activeChild()->metaObject()->className();
            QCOMPARE(u"%1 %2"_s.arg(fixture.beeps).arg(QLatin1StringView(active)), expected);
        }
        QCOMPARE(fixture.stored(allIngredients), oldLinks);
    }
};

QTEST_MAIN(tst_Composing)
#include "tst_composing.moc"
