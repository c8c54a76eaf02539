#pragma once

#include <QString>

// An ingredient of a recipe. Its line in a list is made from the name and the quantity and never
// taken apart again, since both may hold parentheses.
struct IngredientLine {
    QString name;
    QString quantity;

    QString text() const; // "Salt (1 tsp)"
};

// The parts that are not empty, with a blank between them; cut to 25 UTF-16 units, or to less where
// that would go through the middle of a character.
QString quantityText(const QString &amount, const QString &unit, const QString &preparation);
