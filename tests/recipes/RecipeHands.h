#pragma once

#include "Kitchen.h"
#include "frmRecipe.h"

// The user's hands on the record window.
class RecipeHands
{
public:
    explicit RecipeHands(Kitchen &kitchen);

    // Opens the recipe with the key.
    frmRecipe &open(qint64 key);

    // Does one step after the other, separated by commas: "author X", "serves X", "instructions X"
    // (typed at the end), "type N", "rate N" (chosen), "new N", "edit N", "describe N" (N is the
    // answer), "next", "previous", "save", "done", "ingredients", "utensils", "dontsave",
    // "vegetarian". A step that ends in "?Yes" or "?No" is asked whether to save.
    void perform(const QString &steps);

    // Title, author, type, serves, rating, vegetarian or not, ingredients, utensils, instructions.
    QString shown() const;
    // "locked" or "open", then which of "dontsave" and "save" are enabled.
    QString state() const;

    // The boxes of the window.
    static MessageBox error(const QString &text);
    static MessageBox savePrompt();
    static InputBox nameBox(const QString &defaultText);
    static InputBox descriptionBox(const QString &defaultText);

private:
    void performStep(const QString &step, const QString &argument);

    Kitchen &m_kitchen;
    frmRecipe *m_form = nullptr;
};
