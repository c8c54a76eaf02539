#pragma once

#include "composition/IngredientLine.h"

#include <QList>
#include <QStringList>

// What a composition editor needs of the window that shows its recipe. The window of the class
// frmRecipe is one; it is loaded as long as it can open an editor.
class ComposedRecipe
{
public:
    virtual qint64 recipeId() const = 0; // of the recipe shown, which is stored
    virtual QList<IngredientLine> ingredientLines() const = 0; // as listed
    virtual QStringList utensilLines() const = 0; // as listed

protected:
    ~ComposedRecipe() = default;
};
