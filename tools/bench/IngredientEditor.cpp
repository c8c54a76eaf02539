#include "IngredientEditor.h"

#include "PlainSqlite.h"
#include "composition/frmChangeIngredients.h"
#include "recipes/frmRecipe.h"
#include "widgets/ListBox.h"

using namespace Qt::Literals::StringLiterals;

IngredientEditor::IngredientEditor(BenchWindow &window, const frmRecipe &recipe)
    : m_window(window)
    , m_recipe(recipe)
{
}

const QWidget &IngredientEditor::editor() const
{
    return *m_window.frame.find<frmChangeIngredients>();
}

void IngredientEditor::open()
{
    press(m_recipe, "cmdChangeIngredients"_L1);
}

void IngredientEditor::cancel()
{
    press(editor(), "cmdCancel"_L1);
    BenchWindow::deleteClosed();
}

void IngredientEditor::changeLine()
{
    auto &lines = *editor().findChild<ListBox *>("lstRecipeIngredients"_L1);
    auto &catalog = *editor().findChild<ListBox *>("lstIngredients"_L1);
    int unused = 0;
    while (lines.rowOf(catalog.keyAt(unused)) >= 0)
        ++unused;
    lines.selectRow(0);
    press(editor(), "cmdRemove"_L1);
    catalog.selectRow(unused);
    press(editor(), "cmdAdd"_L1);
}

Cost IngredientEditor::changeLineAndFinish()
{
    open();
    changeLine();
    const QWidget &opened = editor();
    const Cost cost = secondsOf([&] { press(opened, "cmdDone"_L1); });
    BenchWindow::deleteClosed();
    return cost;
}

Cost replaceLinesPlainly(SQLite::Database &plain, qint64 recipe, int lines)
{
    return secondsOf([&] {
        plain.exec("BEGIN IMMEDIATE");
        PlainStatement erase(plain.getHandle(), "DELETE FROM RecipeIngredients WHERE RecipeID = ?");
        erase.bind(1, recipe);
        erase.run();
        PlainStatement insert(plain.getHandle(),
                              "INSERT INTO RecipeIngredients (RecipeID, IngredientID, Quantity) "
                              "VALUES (?, ?, ?)");
        insert.bind(1, recipe);
        for (int i = 1; i <= lines; ++i) {
            const std::string quantity = std::to_string(i) + " cup";
            insert.bind(2, qint64{17} * i);
            insert.bind(3, quantity);
            insert.run();
        }
        plain.exec("COMMIT");
    });
}
