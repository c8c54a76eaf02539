#pragma once

#include "composition/ComposedRecipe.h"
#include "data/TypesAndRatings.h"

#include <functional>
#include <optional>

class DataSource;
class Interaction;
class RecordCursor;

// What a window shows of a recipe and stores in its row. RecipeRow.cpp lists the columns.
struct RecipeFields {
    QString name;
    QString description;
    QString author;
    int type = defaultRecipeType; // position in recipeTypes(); -1 if none is selected
    QString instructions;
    int rating = defaultRating; // position in recipeRatings(); -1 if none is selected
    QString serves; // as typed; empty text is stored as 0
};

// A recipe as it was shown before the user edited it.
struct ShownRecipe {
    qint64 key = 0; // 0 for a new recipe
    RecipeFields fields;
    QList<IngredientLine> ingredients; // in the order shown
    QStringList utensils; // in the order shown
    bool AllVegetarian = false;
};

// Reads the current row of `recipes`, and the lines of its recipe from the two joins. Moves the
// joins' cursors. Throws DatabaseError.
ShownRecipe readRecipe(RecordCursor &recipes, RecordCursor &ingredients, RecordCursor &utensils);

// Asks for the name of a recipe until the user enters a valid one or cancels, and shows an error
// for each invalid one. Returns the name without the spaces around it; empty text if the user
// cancels. `currentName` is the default answer and is accepted without calling isTaken.
QString askRecipeName(Interaction &interaction, const QString &currentName,
                      const std::function<bool(const QString &)> &isTaken);

void showRecipeNameTaken(Interaction &interaction);

// Whether another recipe than the one with the key `ownKey` has the name; case does not count.
// Moves the cursor. Throws DatabaseError.
bool isRecipeNameTaken(RecordCursor &recipes, const QString &name, qint64 ownKey);

// Stores what the user has entered and returns the recipe's key. In the row of a stored recipe only
// those columns are written whose value differs from the one shown or that are null, so that a
// value that cannot be shown exactly is not changed. Stores nothing and returns nullopt if another
// recipe has the new name. Moves the cursor. Throws DatabaseError.
std::optional<qint64> storeRecipe(DataSource &recipes, const ShownRecipe &shown,
                                  const RecipeFields &entered);
