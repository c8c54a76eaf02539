#include "ComposedRecipe.h"
#include "DataSource.h"
#include "Hands.h"
#include "ListBox.h"
#include "Stage.h"
#include "frmChangeIngredients.h"
#include "frmChangeUtensils.h"
#include "frmIngredient.h"
#include "frmUtensil.h"

#include <QComboBox>
#include <QMenuBar>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kitchen =
    u"INSERT INTO Recipes (RecipeID, RecipeName) VALUES (17, 'Soup'), (18, 'Stew');"
    "INSERT INTO Ingredients VALUES (1, 'Salt', 0, 0, 1), (2, 'Beans (white)', 0, 0, 1),"
    "(3, 'Beans', 0, 0, 1), (4, 'Cook''s spice', 0, 0, 1);"
    "INSERT INTO RecipeIngredients VALUES (17, 2, '1 (large) can'), (18, 3, '1 cup'),"
    "(17, 4, 'as much as a large spoon holds');"
    "INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'Large pot'), (3, 'Knife');"
    "INSERT INTO RecipeUtensils VALUES (17, 1), (18, 3);"_s;

// Stands in for the recipe window: it reads its recipe at every activation, and anybody may make it
// show another one.
class frmRecipe : public ChildWindow, public ComposedRecipe
{
    Q_OBJECT

public:
    explicit frmRecipe(Frame &frame)
        : ChildWindow(frame)
    {
        setTitle(u"Utensils"_s); // the recipe's name, which may be anything
    }

    qint64 recipeId() const override { return id; }
    QList<IngredientLine> ingredientLines() const override { return ingredients; }
    QStringList utensilLines() const override { return utensils; }

    qint64 id = 17;
    QList<IngredientLine> ingredients;
    QStringList utensils;

protected:
    void Form_Load() override
    {
        for (DataSource *source : {&m_ingredients, &m_utensils})
            source->DatabaseName = DatabasePath;
        m_ingredients.RecordSource =
            u"SELECT RecipeIngredients.RecipeID, RecipeIngredients.Quantity, "
            "Ingredients.IngredientName FROM Ingredients INNER JOIN RecipeIngredients "
            "ON Ingredients.IngredientID = RecipeIngredients.IngredientID"_s;
        m_utensils.RecordSource = u"SELECT RecipeUtensils.RecipeID, Utensils.UtensilName "
                                  "FROM Utensils INNER JOIN RecipeUtensils "
                                  "ON Utensils.UtensilID = RecipeUtensils.UtensilID"_s;
    }

    void Form_Activate() override
    {
        ingredients.clear();
        utensils.clear();
        walk(m_ingredients, [this](RecordCursor &row) {
            ingredients.append(
                {row.value("IngredientName"_L1).toString(), row.value("Quantity"_L1).toString()});
        });
        walk(m_utensils,
             [this](RecordCursor &row) { utensils += row.value("UtensilName"_L1).toString(); });
    }

private:
    template <class Take>
    void walk(DataSource &source, Take take) const
    {
        RecordCursor &rows = source.Recordset();
        rows.Requery();
        const QString ofRecipe = u"RecipeID = %1"_s.arg(id);
        for (rows.FindFirst(ofRecipe); !rows.NoMatch(); rows.FindNext(ofRecipe))
            take(rows);
    }

    DataSource m_ingredients;
    DataSource m_utensils;
};

class frmRecipes : public ChildWindow
{
    Q_OBJECT
    using ChildWindow::ChildWindow;
};

class Kitchen : public Stage
{
    Q_OBJECT

public:
    explicit Kitchen(const QString &more = {})
        : Stage(kitchen + more)
    {
        QMenu *menu = menuBar()->addMenu(u"&View"_s);
        const auto add = [&](Qt::Key key, void (Kitchen::*handler)()) {
            frame.boundary().connect(menu->addAction({}, QKeySequence(key), this, [] {}),
                                     &QAction::triggered, this, handler);
        };
        add(Qt::Key_F5, &Kitchen::place<frmRecipes, 600, 0>);
        add(Qt::Key_F6, &Kitchen::place<frmIngredient, 0, 330>);
        add(Qt::Key_F7, &Kitchen::place<frmUtensil, 545, 330>);
        add(Qt::Key_F8, &Kitchen::place<frmRecipe, 600, 165>);
        QCoreApplication::processEvents(); // the menu bar takes the keys up
    }

    // Its recipe window and an editor on it.
    template <class Editor>
    Editor &compose()
    {
        open<frmRecipe>();
        return open<Editor>();
    }

    QString linksOf(int recipe) const
    {
        return rowsOf(qPrintable(u"SELECT IngredientName, Quantity FROM RecipeIngredients NATURAL "
                                 "JOIN Ingredients WHERE RecipeID = %1 "
                                 "ORDER BY RecipeIngredients.rowid"_s.arg(recipe)));
    }

    template <class Window, int x, int y>
    void place()
    {
        auto &window = frame.load<Window>();
        if (!window.isVisible())
            window.parentWidget()->setGeometry(x, y, 390, 160);
        frame.show(window);
    }
};

constexpr auto allIngredients = "SELECT * FROM RecipeIngredients ORDER BY rowid";
constexpr auto allUtensils = "SELECT * FROM RecipeUtensils ORDER BY rowid";
const QString oldLinks =
    u"Beans (white)|1 (large) can, Cook's spice|as much as a large spoon holds"_s;

MessageBox warning(const QString &text, const QString &title)
{
    return {text, title, Icon::Exclamation};
}

} // namespace

class tst_Composing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ingredients()
    {
        Kitchen kitchen;
        const auto &editor = kitchen.compose<frmChangeIngredients>();
        auto &lines = control<ListBox>(editor, u"lstRecipeIngredients"_s);
        auto &catalog = control<ListBox>(editor, u"lstIngredients"_s);
        auto &amount = control<QComboBox>(editor, u"cmbAmount"_s);
        const QString first = u"Beans (white) (1 (large) can)"_s;
        const QString second = u"Cook's spice (as much as a large spoon holds)"_s;
        QCOMPARE(lines.texts(), QStringList({first, second}));
        QCOMPARE(lines.selectedRow(), 0);
        QCOMPARE(catalog.texts(),
                 QStringList({u"Beans"_s, u"Beans (white)"_s, u"Cook's spice"_s, u"Salt"_s}));
        QCOMPARE(amount.currentText(), u"1"_s);
        QCOMPARE(amount.currentIndex(), 7); // where the arrows go on from

        press(editor, u"cmdAdd"_s);
        catalog.selectRow(1);
        kitchen.doorway.expect(
            warning(u"Ingredient is already in the ingredient box"_s, u"Can't add"_s));
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
        recipe.id = 18; // whatever it shows by now
        press(editor, u"cmdDone"_s);
        QVERIFY(!kitchen.frame.find<frmChangeIngredients>());
        QCOMPARE(kitchen.linksOf(17),
                 u"Cook's spice|as much as a large spoon holds, Beans|1 tsp, "
                 "Salt|1/ tbsp ground, Basil|"_s);
        QCOMPARE(kitchen.linksOf(18), u"Beans|1 cup"_s);
        QCOMPARE(kitchen.frame.activeChild(), &recipe);
        QCOMPARE(recipe.ingredients.size(), 1);
    }

    void utensils()
    {
        Kitchen kitchen;
        const auto &editor = kitchen.compose<frmChangeUtensils>();
        QCOMPARE(editor.title(), u"Change Untensils"_s);
        auto &lines = control<ListBox>(editor, u"lstRecipeUtensils"_s);
        auto &catalog = control<ListBox>(editor, u"lstUtensils"_s);
        QVERIFY(catalog.hasFocus());
        QCOMPARE(catalog.texts(), QStringList({u"Knife"_s, u"Large pot"_s, u"Whisk"_s}));
        kitchen.doorway.expect(warning(
            u"No item was selected in the utensils box.  Try selecting the item you want to add "
            "and then hit add again"_s,
            u"No item selected"_s));
        press(editor, u"cmdAdd"_s);
        const MessageBox noLine = warning(
            u"No item was selected in the recipe utensils box.  Try selecting the item you want "
            "to delete and then hit delete again"_s,
            u"No item selected"_s);
        kitchen.doorway.expect(noLine);
        press(editor, u"cmdRemove"_s);

        QTest::keyClick(&catalog, Qt::Key_Down);
        QCOMPARE(catalog.selectedText(), u"Knife"_s);
        press(editor, u"cmdAdd"_s);
        kitchen.doorway.expect(warning(u"Utensil is already in the utensil box"_s, u"Can't add"_s));
        press(editor, u"cmdAdd"_s);
        QCOMPARE(lines.texts(), QStringList({u"Whisk"_s, u"Knife"_s}));
        lines.selectRow(0);
        press(editor, u"cmdRemove"_s);
        QCOMPARE(lines.selectedRow(), -1);

        // The catalog keeps the focus when it has the editor activated.
        press(editor, u"cmdAddUtensil"_s);
        const auto &drawer = *kitchen.frame.find<frmUtensil>();
        auto &name = control<QLineEdit>(drawer, u"txtUtensilName"_s);
        press(drawer, u"cmdNew"_s);
        QTest::keyClicks(&name, u"Axe"_s);
        press(drawer, u"cmdSave"_s);
        kitchen.open<frmRecipes>();
        QCOMPARE(kitchen.beeps, 1);
        QCOMPARE(kitchen.frame.activeChild(), &drawer);
        QVERIFY(drawer.isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(catalog.texts().first(), u"Axe"_s);
        press(drawer, u"cmdDone"_s);
        QCOMPARE(kitchen.frame.activeChild(), &editor);
        QTest::keyClick(&catalog, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(kitchen.rowsOf(allUtensils), u"18|3, 17|3"_s);
        QCOMPARE(kitchen.frame.find<frmRecipe>()->utensils, QStringList(u"Knife"_s));
    }

    void anEmptyList()
    {
        Kitchen kitchen(u"DELETE FROM RecipeIngredients WHERE RecipeID = 17;"
                        "DELETE FROM Ingredients"_s);
        const auto &editor = kitchen.compose<frmChangeIngredients>();
        kitchen.doorway.expect(warning(
            u"No item was selected in the ingredients box.  Try selecting the item you want to add "
            "and then hit add again"_s,
            u"No item selected"_s));
        press(editor, u"cmdAdd"_s);
        kitchen.doorway.expect(warning(
            u"No item was selected in the recipe ingredients box.  Try selecting the item you want "
            "to delete and then hit delete again"_s,
            u"No item selected"_s));
        press(editor, u"cmdRemove"_s);
        kitchen.file.write(u"INSERT INTO RecipeIngredients VALUES (17, 1, 'late')"_s);
        press(editor, u"cmdDone"_s);
        QCOMPARE(kitchen.rowsOf(allIngredients), u"18|3|1 cup"_s);
    }

    void leavesWithoutStoring()
    {
        for (const bool byCloseBox : {false, true}) {
            Kitchen kitchen;
            auto &editor = kitchen.compose<frmChangeIngredients>();
            press(editor, u"cmdRemove"_s);
            if (byCloseBox)
                editor.parentWidget()->close();
            else
                QTest::keyClick(&control<ListBox>(editor, u"lstIngredients"_s), Qt::Key_Escape);
            QCoreApplication::processEvents();
            QVERIFY(!kitchen.frame.find<frmChangeIngredients>());
            QCOMPARE(kitchen.linksOf(17), oldLinks);
        }
    }

    void needsItsRecipeWindow()
    {
        Kitchen kitchen;
        kitchen.expectFailure(u"Change Untensils"_s, u"There is no recipe open to change."_s);
        kitchen.frame.boundary().run({}, [&] { kitchen.open<frmChangeUtensils>(); });
        QVERIFY(!kitchen.frame.find<frmChangeUtensils>());
    }

    // Whether a line's ingredient is gone or the file cannot be written: nothing has changed, and
    // Done works once it is put right.
    void refusesDone_data()
    {
        QTest::addColumn<QString>("harm");
        QTest::addColumn<QString>("repair");
        QTest::addColumn<MessageBox>("box");
        QTest::newRow("gone") << u"UPDATE Ingredients SET IngredientName = 'Spice' "
                                 "WHERE IngredientID = 4"_s
                              << u"INSERT INTO Ingredients VALUES (5, 'COOK''S SPICE', 0, 0, 1)"_s
                              << warning(u"These ingredients are not in the catalog any more:\n\n"
                                         "Cook's spice (as much as a large spoon holds)\n\nNothing "
                                         "was stored. Add them to the catalog again with Add "
                                         "Ingredient, or remove their lines."_s,
                                         u"Can't save"_s);
        QTest::newRow("failing write")
            << u"CREATE TRIGGER t BEFORE INSERT ON RecipeIngredients WHEN NEW.IngredientID = 4 "
               "BEGIN SELECT RAISE(ABORT, 'no more'); END"_s
            << u"DROP TRIGGER t"_s
            << warning(u"Something went wrong in \"Change Ingredients\":\nThe recipe file %1 could "
                       "not be used: no more"_s,
                       u"Error"_s);
    }

    void refusesDone()
    {
        QFETCH(const QString, harm);
        QFETCH(const QString, repair);
        QFETCH(MessageBox, box);
        Kitchen kitchen;
        const auto &editor = kitchen.compose<frmChangeIngredients>();
        const QString before = kitchen.rowsOf(allIngredients);
        kitchen.file.write(harm);
        box.text.replace(u"%1"_s, DatabasePath);
        kitchen.doorway.expect(box);
        press(editor, u"cmdDone"_s);
        kitchen.doorway.checkAllCame();
        QCOMPARE(kitchen.rowsOf(allIngredients), before);
        QCOMPARE(control<ListBox>(editor, u"lstRecipeIngredients"_s).count(), 2);
        kitchen.file.write(repair);
        press(editor, u"cmdDone"_s);
        QCOMPARE(kitchen.linksOf(17).toLower(), oldLinks.toLower());
    }

    // What the user does, and after it how often it has beeped and which window is active.
    void activation_data()
    {
        using Steps = QList<std::pair<QString, QString>>;
        QTest::addColumn<Steps>("steps");
        const Steps composing = {{u"type F5"_s, u"0 frmRecipes"_s},
                                 {u"type F8"_s, u"0 frmRecipe"_s},
                                 {u"change"_s, u"0 frmChangeIngredients"_s}};
        const QString held = u"%1 frmChangeIngredients"_s;
        QTest::newRow("an editor") << composing
                + Steps{{u"type F5"_s, held.arg(1)},
                        {u"click frmRecipe"_s, held.arg(2)}, // though its caption is "Utensils"
                        {u"close frmRecipe"_s, held.arg(3)},
                        {u"type ctrl+Tab"_s, held.arg(4)},
                        {u"type F7"_s, u"4 frmUtensil"_s},
                        {u"type F6"_s, u"5 frmUtensil"_s},
                        {u"close frmUtensil"_s, held.arg(5)},
                        {u"type F6"_s, u"5 frmIngredient"_s},
                        {u"click frmRecipe"_s, u"6 frmIngredient"_s},
                        {u"double frmRecipes"_s, u"8 frmIngredient"_s},
                        {u"type Escape"_s, u"8 frmChangeIngredients"_s},
                        {u"type Escape"_s, u"8 frmRecipe"_s}};
        QTest::newRow("two catalogs") << Steps{{u"type F6 F7"_s, u"1 frmIngredient"_s},
                                               {u"click frmUtensil"_s, u"2 frmIngredient"_s},
                                               {u"type F5"_s, u"3 frmIngredient"_s},
                                               {u"min frmIngredient"_s, u"3 frmIngredient"_s},
                                               {u"type F7"_s, u"4 frmIngredient"_s},
                                               {u"type F6"_s, u"4 frmIngredient"_s},
                                               {u"max frmIngredient"_s, u"4 frmIngredient"_s},
                                               {u"type F5"_s, u"5 frmIngredient"_s},
                                               {u"type Escape"_s, u"5 frmRecipes"_s}};
    }

    void activation()
    {
        using Steps = QList<std::pair<QString, QString>>;
        QFETCH(const Steps, steps);
        Kitchen kitchen;
        const Hands hands(kitchen);
        for (const auto &[step, expected] : steps) {
            const QString verb = step.section(u' ', 0, 0);
            const QString object = step.section(u' ', 1);
            const ChildWindow *child = kitchen.frame.find(object.toLatin1());
            if (verb == u"type"_s)
                hands.type(object.split(u' '));
            else if (verb == u"change"_s)
                kitchen.open<frmChangeIngredients>();
            else if (verb == u"close"_s)
                hands.click(onTitleBar(*child, QStyle::SC_TitleBarCloseButton));
            else if (verb == u"min"_s)
                hands.click(onTitleBar(*child, QStyle::SC_TitleBarMinButton));
            else if (verb == u"max"_s)
                hands.click(onTitleBar(*child, QStyle::SC_TitleBarMaxButton));
            else
                hands.click(child->mapToGlobal(child->rect().center()),
                            verb == u"double"_s ? 2 : 1);
            const auto state = [&kitchen] {
                const ChildWindow *active = kitchen.frame.activeChild();
                return QString::number(kitchen.beeps) + u' '
                    + QLatin1StringView(active ? active->metaObject()->className() : "");
            };
            if (state() != expected)
                QTRY_COMPARE(state(), expected);
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(!kitchen.frame.activeChild()->isHidden());
    }
};

QTEST_MAIN(tst_Composing)
#include "tst_composing.moc"
