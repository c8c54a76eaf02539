#include "catalogs/frmIngredient.h"
#include "catalogs/frmUtensil.h"
#include "composition/IngredientLine.h"
#include "composition/frmChangeIngredients.h"
#include "composition/frmChangeUtensils.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"
#include "support/WindowFixture.h"
#include "widgets/ListBox.h"

#include <QComboBox>
#include <QLineEdit>

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
Editor &compose(WindowFixture &kitchen)
{
    kitchen.frame.load<frmRecipe>().CurrentRecipeID = 17;
    kitchen.open<frmRecipe>();
    return kitchen.open<Editor>();
}

MessageBox noneSelected(const QString &box, const QString &act)
{
    return WindowFixture::warning(
        u"No item was selected in the %1 box.  Try selecting the item you want "
        "to %2 and then hit %2 again"_s.arg(box, act),
        u"No item selected"_s);
}

} // namespace

class tst_Composing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ingredients()
    {
        WindowFixture kitchen(dishes);
        const auto &editor = compose<frmChangeIngredients>(kitchen);
        auto &lines = control<ListBox>(editor, u"lstRecipeIngredients"_s);
        auto &catalog = control<ListBox>(editor, u"lstIngredients"_s);
        auto &amount = control<QComboBox>(editor, u"cmbAmount"_s);
        const QString first = u"Beans (white) (1 (large) can)"_s;
        const QString second = u"Cook's spice (as much as a large spoon holds)"_s;

        kitchen.perform(editor, u"cmdAdd, lstIngredients 1"_s);
        kitchen.interaction.expect(WindowFixture::warning(
            u"Ingredient is already in the ingredient box"_s, u"Can't add"_s));
        kitchen.perform(editor, u"cmdAdd"_s);
        QVERIFY(catalog.hasFocus());
        amount.setFocus();
        amount.lineEdit()->selectAll();
        QTest::keyClicks(&amount, u"1/"_s); // is not completed to 1/8
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

        kitchen.perform(editor, u"cmdAddIngredient"_s);
        kitchen.perform(*kitchen.frame.find<frmIngredient>(),
                        u"cmdNew, txtIngredient Basil, cmdSave, cmdDone"_s);
        QCOMPARE(kitchen.frame.activeChild(), &editor);
        QCOMPARE(catalog.selectedText(), u"Basil"_s); // of no type
        for (auto *combo : editor.findChildren<QComboBox *>())
            combo->setCurrentIndex(0);
        auto &recipe = *kitchen.frame.find<frmRecipe>();
        recipe.CurrentRecipeID = 18; // whatever it shows by now
        kitchen.perform(editor, u"cmdAdd, cmdDone"_s);
        QVERIFY(!kitchen.frame.find<frmChangeIngredients>());
        QCOMPARE(kitchen.stored(allIngredients),
                 u"18|3|1 cup, 17|4|as much as a large spoon holds, 17|3|1 tsp, "
                 "17|1|1/ tbsp ground, 17|5|"_s);
        QCOMPARE(kitchen.frame.activeChild(), &recipe);
        QCOMPARE(recipe.ingredientLines().size(), 1);
    }

    void utensils()
    {
        WindowFixture kitchen(dishes);
        const auto &editor = compose<frmChangeUtensils>(kitchen);
        auto &lines = control<ListBox>(editor, u"lstRecipeUtensils"_s);
        auto &catalog = control<ListBox>(editor, u"lstUtensils"_s);
        QVERIFY(catalog.hasFocus());
        kitchen.interaction.expect(noneSelected(u"utensils"_s, u"add"_s));
        kitchen.interaction.expect(noneSelected(u"recipe utensils"_s, u"delete"_s));
        kitchen.perform(editor, u"cmdAdd, cmdRemove, lstUtensils 0, cmdAdd"_s);
        kitchen.interaction.expect(
            WindowFixture::warning(u"Utensil is already in the utensil box"_s, u"Can't add"_s));
        kitchen.perform(editor, u"cmdAdd"_s);
        QCOMPARE(lines.texts(), QStringList({u"Whisk"_s, u"Knife"_s}));
        kitchen.perform(editor, u"lstRecipeUtensils 0, cmdRemove"_s);
        QCOMPARE(lines.selectedRow(), -1);

        // The catalog keeps the focus when it has the editor activated.
        kitchen.perform(editor, u"cmdAddUtensil"_s);
        const auto &drawer = *kitchen.frame.find<frmUtensil>();
        kitchen.perform(drawer, u"cmdNew, txtUtensilName Axe, cmdSave"_s);
        kitchen.open<frmRecipes>();
        QCOMPARE(kitchen.frame.activeChild(), &drawer);
        QVERIFY(drawer.isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(catalog.texts().first(), u"Axe"_s);
        kitchen.perform(drawer, u"cmdDone"_s);
        QTest::keyClick(&catalog, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(kitchen.stored("SELECT * FROM RecipeUtensils ORDER BY rowid"), u"18|3, 17|3"_s);
        QCOMPARE(kitchen.frame.find<frmRecipe>()->utensilLines(), QStringList(u"Knife"_s));
    }

    void anEmptyList()
    {
        WindowFixture kitchen(dishes
                              + "DELETE FROM RecipeIngredients WHERE RecipeID = 17;"
                                "DELETE FROM Ingredients");
        const auto &editor = compose<frmChangeIngredients>(kitchen);
        kitchen.interaction.expect(noneSelected(u"ingredients"_s, u"add"_s));
        kitchen.interaction.expect(noneSelected(u"recipe ingredients"_s, u"delete"_s));
        kitchen.perform(editor, u"cmdAdd, cmdRemove"_s);
        kitchen.sql("INSERT INTO RecipeIngredients VALUES (17, 1, 'late')");
        kitchen.perform(editor, u"cmdDone"_s);
        QCOMPARE(kitchen.stored(allIngredients), u"18|3|1 cup"_s);
    }

    void quantity()
    {
        const std::pair<QStringList, QString> rows[] = {
            // amount, unit and preparation
            {{u"  1  x "_s, u"tsp"_s, u" (fine) "_s}, u"1  x  tsp  (fine)"_s},
            {{u"\t1"_s, u""_s, u"minced"_s}, u"\t1 minced"_s},
            {{u"123456789012345678901234"_s, u"tsp"_s, u""_s}, u"123456789012345678901234 "_s},
            {{u"123456789012345678901234e\u0301"_s, u""_s, u""_s}, u"123456789012345678901234"_s},
        };
        for (const auto &[parts, quantity] : rows)
            QCOMPARE(quantityText(parts[0], parts[1], parts[2]), quantity);
    }

    // Whether a line's ingredient is gone or the file cannot be written: nothing has changed, and
    // Done works once it is put right.
    void refusesDone()
    {
        const std::tuple<QByteArray, QByteArray, MessageBox> rows[] = {
            {"UPDATE Ingredients SET IngredientName = 'Spice' WHERE IngredientID = 4",
             "UPDATE Ingredients SET IngredientName = 'COOK''S SPICE' WHERE IngredientID = 4",
             WindowFixture::warning(u"These ingredients are not in the catalog any more:\n\n"
                                    "Cook's spice (as much as a large spoon holds)\n\nNothing was "
                                    "stored. Add them to the catalog again with Add Ingredient, or "
                                    "remove their lines."_s,
                                    u"Can't save"_s)},
            {"CREATE TRIGGER t BEFORE INSERT ON RecipeIngredients WHEN NEW.IngredientID = 4 "
             "BEGIN SELECT RAISE(ABORT, 'no more'); END",
             "DROP TRIGGER t",
             WindowFixture::failure(u"Change Ingredients"_s,
                                    u"The recipe file %1 could not be used: no more"_s)},
        };
        for (auto [harm, repair, box] : rows) {
            WindowFixture kitchen(dishes);
            const auto &editor = compose<frmChangeIngredients>(kitchen);
            kitchen.sql(harm);
            box.text.replace(u"%1"_s, kitchen.file.path());
            kitchen.interaction.expect(box);
            press(editor, u"cmdDone"_s);
            kitchen.interaction.checkAllCame();
            QCOMPARE(kitchen.stored(allIngredients), oldLinks);
            kitchen.sql(repair);
            press(editor, u"cmdDone"_s);
            QCOMPARE(kitchen.stored(allIngredients),
                     u"18|3|1 cup, 17|2|1 (large) can, 17|4|as much as a large spoon holds"_s);
        }
    }

    // What the user does, and after it how often it has beeped and which window is active.
    void activation()
    {
        WindowFixture kitchen(dishes);
        const auto &editor = compose<frmChangeIngredients>(kitchen);
        kitchen.perform(editor, u"cmdRemove"_s); // left by Cancel at last
        auto &recipe = *kitchen.frame.find<frmRecipe>();
        recipe.parentWidget()->setGeometry(600, 165, 390, 160);
        const std::pair<std::function<void()>, QString> steps[] = {
            {[&] { kitchen.open<frmRecipes>(); }, u"1 frmChangeIngredients"_s},
            // Though it is called "Utensils".
            {[&] { QTest::mouseClick(&recipe, Qt::LeftButton); }, u"2 frmChangeIngredients"_s},
            {[&] { kitchen.open<frmUtensil>(); }, u"2 frmUtensil"_s},
            {[&] { kitchen.open<frmIngredient>(); }, u"3 frmUtensil"_s},
            {[&] { press(*kitchen.frame.find<frmUtensil>(), u"cmdDone"_s); },
             u"3 frmChangeIngredients"_s},
            {[&] { kitchen.open<frmIngredient>(); }, u"3 frmIngredient"_s},
            {[&] { kitchen.open<frmRecipe>(); }, u"4 frmIngredient"_s},
            {[&] { press(*kitchen.frame.find<frmIngredient>(), u"cmdDone"_s); },
             u"4 frmChangeIngredients"_s},
            {[&] { press(editor, u"cmdCancel"_s); }, u"4 frmRecipe"_s},
        };
        for (const auto &[act, expected] : steps) {
            act();
            QCoreApplication::processEvents();
            const char *active = kitchen.frame.activeChild()->metaObject()->className();
            QCOMPARE(u"%1 %2"_s.arg(kitchen.beeps).arg(QLatin1StringView(active)), expected);
        }
        QCOMPARE(kitchen.stored(allIngredients), oldLinks);
    }
};

QTEST_MAIN(tst_Composing)
#include "tst_composing.moc"
