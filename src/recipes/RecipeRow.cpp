#include "recipes/RecipeRow.h"

#include "data/Criterion.h"
#include "data/DataSource.h"
#include "data/Database.h"
#include "data/DatabaseError.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

qint64 addRecipe(RecordCursor &recipes, const RecipeFields &entered)
{
    recipes.AddNew();
    for (const RecipeField &field : entered)
        recipes.setValue(field.name, field.value);
    recipes.Update();
    recipes.MoveLast();
    return recipes.value("RecipeID"_L1).toLongLong();
}

void changeRecipe(RecordCursor &recipes, const RecipeFields &shown, const RecipeFields &entered)
{
    RecipeFields changed;
    for (qsizetype i = 0; i < entered.size(); ++i) {
        if (entered[i].value != shown[i].value || !recipes.value(entered[i].name).isValid())
            changed += entered[i];
    }
    if (changed.isEmpty())
        return;
    recipes.Edit();
    for (const RecipeField &field : std::as_const(changed))
        recipes.setValue(field.name, field.value);
    recipes.Update();
}

void findRecipe(RecordCursor &recipes, qint64 key)
{
    recipes.FindFirst(criterion("RecipeID"_L1, key));
    if (recipes.NoMatch()) {
        throw DatabaseError(QCoreApplication::translate(
            "RecipeRow", "This recipe has been deleted by another program. Nothing was stored."));
    }
}

} // namespace

bool isRecipeNameTaken(RecordCursor &recipes, const QString &name, qint64 ownKey)
{
    const QString ofThatName = criterion("RecipeName"_L1, Comparison::Like, name);
    recipes.FindFirst(ofThatName);
    while (!recipes.NoMatch() && recipes.value("RecipeID"_L1) == ownKey)
        recipes.FindNext(ofThatName);
    return !recipes.NoMatch();
}

std::optional<qint64> storeRecipe(DataSource &recipes, qint64 key, const RecipeFields &shown,
                                  const RecipeFields &entered)
{
    Transaction whole(recipes.Database());
    RecordCursor &cursor = recipes.Recordset();
    cursor.Requery(); // another program may have taken the name since, or the row away
    const QVariant &name = entered.constFirst().value;
    const bool isNewName = key == 0 || name != shown.constFirst().value;
    if (isNewName && isRecipeNameTaken(cursor, name.toString(), key))
        return {};
    if (key == 0) {
        key = addRecipe(cursor, entered);
    } else {
        findRecipe(cursor, key);
        changeRecipe(cursor, shown, entered);
    }
    whole.commit();
    return key;
}
