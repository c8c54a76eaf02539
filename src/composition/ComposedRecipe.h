#pragma once

#include <QList>
#include <QStringList>

// An ingredient of a recipe. A list shows it as one line of text, which is never parsed to get the
// parts back, since both parts may contain parentheses.
struct IngredientLine {
    QString name;
    QString quantity;

    QString text() const; // "Salt (1 tsp)"
};

// The parts that are not empty, separated by spaces. The result is cut to 25 UTF-16 code units, or
// to fewer if that would split a grapheme.
QString quantityText(const QString &amount, const QString &unit, const QString &preparation);

// What a composition editor reads from the recipe window, which implements this interface. The
// editors find that window by its class name.
class ComposedRecipe
{
public:
    virtual qint64 recipeId() const = 0; // key of the recipe shown, which must be stored
    virtual QList<IngredientLine> ingredientLines() const = 0; // in the order shown
    virtual QStringList utensilLines() const = 0; // in the order shown

protected:
    ~ComposedRecipe() = default;
};
