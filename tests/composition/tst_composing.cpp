#include "catalogs/frmIngredient.h"
#include "catalogs/frmUtensil.h"
#include "composition/ComposedRecipe.h"
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

} // namespace

class tst_Composing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
            << QByteArray("UPDATE Ingredients SET IngredientName = 'Spice' WHERE IngredientID = 4")
            << QByteArray("UPDATE Ingredients SET IngredientName = 'COOK''S SPICE'"
                          " WHERE IngredientID = 4")
            << WindowFixture::warning(
                   u"These ingredients are not in the catalog any more:\n\n"
                   "Cook's spice (as much as a large spoon holds)\n\nNothing was "
                   "stored. Add them to the catalog again with Add Ingredient, "
                   "or remove their lines."_s,
                   u"Can't save"_s);
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
