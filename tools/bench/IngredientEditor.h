#pragma once

#include "BenchWindow.h"
#include "Measurement.h"

#include <SQLiteCpp/Database.h>

class frmRecipe;

// Uses the ingredient editor of the recipe that a recipe window shows. Both windows must outlive
// this object.
class IngredientEditor
{
public:
    IngredientEditor(BenchWindow &window, const frmRecipe &recipe);

    void open();
    void cancel();

    // Opens the editor and replaces the first line with an ingredient that the recipe does not use.
    // Returns what it costs to press Done, until the recipe window shows the new lines.
    Cost changeLineAndFinish();

private:
    const QWidget &editor() const;
    void changeLine();

    BenchWindow &m_window;
    const frmRecipe &m_recipe;
};

// Replaces the lines of a recipe as the editor does, with plain SQLite in one transaction.
Cost replaceLinesPlainly(SQLite::Database &plain, qint64 recipe, int lines);
