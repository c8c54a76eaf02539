#include "Hands.h"
#include "Kitchen.h"
#include "ListBox.h"
#include "frmChangeIngredients.h"
#include "frmChangeUtensils.h"
#include "frmIngredient.h"
#include "frmRecipe.h"
#include "frmRecipes.h"
#include "frmUtensil.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>

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

class ComposingKitchen : public Kitchen
{
    Q_OBJECT

public:
    explicit ComposingKitchen(const QByteArray &more = {})
        : Kitchen(dishes + more)
    {
        QMenu *menu = menuBar()->addMenu(u"&View"_s);
        int key = Qt::Key_F5;
        for (const auto place : {&ComposingKitchen::place<frmRecipes, 600, 0>,
                                 &ComposingKitchen::place<frmIngredient, 0, 330>,
                                 &ComposingKitchen::place<frmUtensil, 545, 330>})
            menu->addAction({}, QKeySequence(key++), this, place);
        QCoreApplication::processEvents(); // the menu bar takes the keys up
    }

    // Its recipe window and an editor on it.
    template <class Editor>
    Editor &compose()
    {
        auto &recipe = open<frmRecipe>();
        recipe.parentWidget()->setGeometry(600, 165, 390, 160);
        recipe.CurrentRecipeID = 17;
        frame.hide(recipe);
        frame.show(recipe);
        QCoreApplication::processEvents();
        return open<Editor>();
    }

private:
    template <class Window, int x, int y>
    void place()
    {
        auto &window = frame.load<Window>();
        if (!window.isVisible())
            window.parentWidget()->setGeometry(x, y, 390, 160);
        frame.show(window);
    }
};

MessageBox noneSelected(const QString &box, const QString &act)
{
    return Kitchen::warning(u"No item was selected in the %1 box.  Try selecting the item you want "
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
        ComposingKitchen kitchen;
        const auto &editor = kitchen.compose<frmChangeIngredients>();
        auto &lines = control<ListBox>(editor, u"lstRecipeIngredients"_s);
        auto &catalog = control<ListBox>(editor, u"lstIngredients"_s);
        auto &amount = control<QComboBox>(editor, u"cmbAmount"_s);
        const QString first = u"Beans (white) (1 (large) can)"_s;
        const QString second = u"Cook's spice (as much as a large spoon holds)"_s;
        QCOMPARE(lines.texts(), QStringList({first, second}));
        QCOMPARE(lines.selectedRow(), 0);

        press(editor, u"cmdAdd"_s);
        catalog.selectRow(1);
        kitchen.doorway.expect(
            Kitchen::warning(u"Ingredient is already in the ingredient box"_s, u"Can't add"_s));
        press(editor, u"cmdAdd"_s);
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

        press(editor, u"cmdAddIngredient"_s);
        const auto &pantry = *kitchen.frame.find<frmIngredient>();
        press(pantry, u"cmdNew"_s);
        QTest::keyClicks(&control<QLineEdit>(pantry, u"txtIngredient"_s), u"Basil"_s);
        press(pantry, u"cmdSave"_s);
        press(pantry, u"cmdDone"_s);
        QCOMPARE(kitchen.frame.activeChild(), &editor);
        QCOMPARE(catalog.selectedText(), u"Basil"_s); // of no type
        QCOMPARE(lines.count(), 3);
        for (auto *combo : editor.findChildren<QComboBox *>())
            combo->setCurrentIndex(0);
        press(editor, u"cmdAdd"_s);

        auto &recipe = *kitchen.frame.find<frmRecipe>();
        recipe.CurrentRecipeID = 18; // whatever it shows by now
        press(editor, u"cmdDone"_s);
        QVERIFY(!kitchen.frame.find<frmChangeIngredients>());
        QCOMPARE(kitchen.stored(allIngredients),
                 u"18|3|1 cup, 17|4|as much as a large spoon holds, 17|3|1 tsp, "
                 "17|1|1/ tbsp ground, 17|5|"_s);
        QCOMPARE(kitchen.frame.activeChild(), &recipe);
        QCOMPARE(recipe.ingredientLines().size(), 1);
    }

    void utensils()
    {
        ComposingKitchen kitchen;
        const auto &editor = kitchen.compose<frmChangeUtensils>();
        QCOMPARE(editor.title(), u"Change Untensils"_s);
        auto &lines = control<ListBox>(editor, u"lstRecipeUtensils"_s);
        auto &catalog = control<ListBox>(editor, u"lstUtensils"_s);
        QVERIFY(catalog.hasFocus());
        kitchen.doorway.expect(noneSelected(u"utensils"_s, u"add"_s));
        press(editor, u"cmdAdd"_s);
        kitchen.doorway.expect(noneSelected(u"recipe utensils"_s, u"delete"_s));
        press(editor, u"cmdRemove"_s);

        QTest::keyClick(&catalog, Qt::Key_Down);
        press(editor, u"cmdAdd"_s);
        kitchen.doorway.expect(
            Kitchen::warning(u"Utensil is already in the utensil box"_s, u"Can't add"_s));
        press(editor, u"cmdAdd"_s);
        QCOMPARE(lines.texts(), QStringList({u"Whisk"_s, u"Knife"_s}));
        lines.selectRow(0);
        press(editor, u"cmdRemove"_s);
        QCOMPARE(lines.selectedRow(), -1);

        // The catalog keeps the focus when it has the editor activated.
        press(editor, u"cmdAddUtensil"_s);
        const auto &drawer = *kitchen.frame.find<frmUtensil>();
        press(drawer, u"cmdNew"_s);
        QTest::keyClicks(&control<QLineEdit>(drawer, u"txtUtensilName"_s), u"Axe"_s);
        press(drawer, u"cmdSave"_s);
        kitchen.open<frmRecipes>();
        QCOMPARE(kitchen.frame.activeChild(), &drawer);
        QVERIFY(drawer.isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(catalog.texts().first(), u"Axe"_s);
        press(drawer, u"cmdDone"_s);
        QTest::keyClick(&catalog, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(kitchen.stored("SELECT * FROM RecipeUtensils ORDER BY rowid"), u"18|3, 17|3"_s);
        const auto &shown =
            control<QListWidget>(*kitchen.frame.find<frmRecipe>(), u"lstUtensils"_s);
        QCOMPARE(shown.count(), 1);
        QCOMPARE(shown.item(0)->text(), u"Knife"_s);
    }

    void anEmptyList()
    {
        ComposingKitchen kitchen("DELETE FROM RecipeIngredients WHERE RecipeID = 17;"
                                 "DELETE FROM Ingredients");
        const auto &editor = kitchen.compose<frmChangeIngredients>();
        kitchen.doorway.expect(noneSelected(u"ingredients"_s, u"add"_s));
        press(editor, u"cmdAdd"_s);
        kitchen.doorway.expect(noneSelected(u"recipe ingredients"_s, u"delete"_s));
        press(editor, u"cmdRemove"_s);
        kitchen.sql("INSERT INTO RecipeIngredients VALUES (17, 1, 'late')");
        press(editor, u"cmdDone"_s);
        QCOMPARE(kitchen.stored(allIngredients), u"18|3|1 cup"_s);
    }

    // Whether a line's ingredient is gone or the file cannot be written: nothing has changed, and
    // Done works once it is put right.
    void refusesDone()
    {
        const std::tuple<QByteArray, QByteArray, MessageBox> rows[] = {
            {"UPDATE Ingredients SET IngredientName = 'Spice' WHERE IngredientID = 4",
             "UPDATE Ingredients SET IngredientName = 'COOK''S SPICE' WHERE IngredientID = 4",
             Kitchen::warning(u"These ingredients are not in the catalog any more:\n\n"
                              "Cook's spice (as much as a large spoon holds)\n\nNothing was "
                              "stored. Add them to the catalog again with Add Ingredient, or "
                              "remove their lines."_s,
                              u"Can't save"_s)},
            {"CREATE TRIGGER t BEFORE INSERT ON RecipeIngredients WHEN NEW.IngredientID = 4 "
             "BEGIN SELECT RAISE(ABORT, 'no more'); END",
             "DROP TRIGGER t",
             Kitchen::failure(u"Change Ingredients"_s,
                              u"The recipe file %1 could not be used: no more"_s)},
        };
        for (auto [harm, repair, box] : rows) {
            ComposingKitchen kitchen;
            const auto &editor = kitchen.compose<frmChangeIngredients>();
            kitchen.sql(harm);
            box.text.replace(u"%1"_s, kitchen.file.path());
            kitchen.doorway.expect(box);
            press(editor, u"cmdDone"_s);
            kitchen.doorway.checkAllCame();
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
        ComposingKitchen kitchen;
        kitchen.compose<frmChangeIngredients>();
        const std::pair<QString, QString> steps[] = {
            {u"type F5"_s, u"1 frmChangeIngredients"_s},
            {u"click frmRecipe"_s, u"2 frmChangeIngredients"_s}, // though it is called "Utensils"
            {u"type ctrl+Tab"_s, u"3 frmChangeIngredients"_s},
            {u"type F7"_s, u"3 frmUtensil"_s},
            {u"type F6"_s, u"4 frmUtensil"_s},
            {u"type Escape"_s, u"4 frmUtensil"_s},
            {u"close frmUtensil"_s, u"4 frmChangeIngredients"_s},
            {u"type F6"_s, u"4 frmIngredient"_s},
            {u"click frmRecipe"_s, u"5 frmIngredient"_s},
            {u"double frmRecipes"_s, u"7 frmIngredient"_s},
            {u"type Escape"_s, u"7 frmChangeIngredients"_s},
            {u"type Escape"_s, u"7 frmRecipe"_s},
        };
        const Hands hands(kitchen);
        press(*kitchen.frame.find<frmChangeIngredients>(), u"cmdRemove"_s); // left by Esc at last
        for (const auto &[step, expected] : steps) {
            const QString verb = step.section(u' ', 0, 0);
            const QString object = step.section(u' ', 1);
            const ChildWindow *child = kitchen.frame.find(object.toLatin1());
            if (verb == "type"_L1)
                hands.type({object});
            else if (verb == "close"_L1)
                hands.click(onTitleBar(*child, QStyle::SC_TitleBarCloseButton));
            else
                hands.click(child->mapToGlobal(child->rect().center()),
                            verb == "double"_L1 ? 2 : 1);
            const auto state = [&kitchen] {
                const ChildWindow *active = kitchen.frame.activeChild();
                return QString::number(kitchen.beeps) + u' '
                    + QLatin1StringView(active ? active->metaObject()->className() : "");
            };
            QTRY_COMPARE(state(), expected);
            QCoreApplication::processEvents();
        }
        QCOMPARE(kitchen.stored(allIngredients), oldLinks);
    }
};

QTEST_MAIN(tst_Composing)
#include "tst_composing.moc"
