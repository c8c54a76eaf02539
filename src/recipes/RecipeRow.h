#pragma once

#include <QList>
#include <QVariant>

#include <optional>

class DataSource;
class RecordCursor;

// A column of the table of recipes and what a window shows for it, as it would be stored.
struct RecipeField {
    QLatin1StringView name;
    QVariant value;
};
using RecipeFields = QList<RecipeField>; // the name comes first

// Whether a recipe of that name is stored; the one with the key, if any, does not count. Moves the
// cursor.
bool isRecipeNameTaken(RecordCursor &recipes, const QString &name, qint64 ownKey);

// Stores what has been entered, as a new recipe where the key is 0, and returns the recipe's key.
// Of a stored recipe only what differs from what was shown is written, and nulls get what is shown
// for them: what cannot be shown as it is stored is thus not changed by showing it. Stores nothing
// and returns nothing where another recipe has the new name. Throws DatabaseError.
std::optional<qint64> storeRecipe(DataSource &recipes, qint64 key, const RecipeFields &shown,
                                  const RecipeFields &entered);
