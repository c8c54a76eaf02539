#pragma once

#include "Kitchen.h"
#include "frmRecipe.h"

// A kitchen and the user's hands on its record window.
class RecipeHands : public Kitchen
{
public:
    using Kitchen::Kitchen;

    // Opens the recipe with the key.
    frmRecipe &open(qint64 key);

    // Does one step after the other, separated by commas: "txtAuthor X" (typed at the end),
    // "cmbRating N" (the N-th chosen), "cmdNew N", "cmdEdit N" (N is the answer), any other button
    // and the check box. A step that ends in "?Yes" or "?No" is asked whether to save.
    void perform(const QString &steps);

    // Title, author, type, serves, rating, vegetarian or not, ingredients, utensils, instructions.
    QString shown() const;
    // "locked" or "open", then which of "dontsave" and "save" are enabled.
    QString state() const;

    static InputBox nameBox(const QString &defaultText);

private:
    void performStep(const QString &name, const QString &argument);

    frmRecipe *m_form = nullptr;
};
