#include "recipes/RecipeRow.h"

#include "data/Criterion.h"
#include "data/DataSource.h"
#include "data/Database.h"
#include "data/DatabaseError.h"
#include "data/DatabaseFunctions.h"
#include "data/FieldValue.h"
#include "data/GeneralFuctions.h"
#include "interaction/Interaction.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(RecipeRow)
};

struct Column {
    QLatin1StringView name;
    QVariant (*value)(const RecipeFields &);
};

template <auto member>
QVariant valueOf(const RecipeFields &fields)
{
    return fields.*member;
}

QVariant valueOfServes(const RecipeFields &fields)
{
    return ValueOrDefault(fields.serves, 0);
}

constexpr Column columns[] = {
    {"RecipeName"_L1, valueOf<&RecipeFields::name>},
    {"Description"_L1, valueOf<&RecipeFields::description>},
    {"Author"_L1, valueOf<&RecipeFields::author>},
    {"RecipeType"_L1, valueOf<&RecipeFields::type>},
    {"Instructions"_L1, valueOf<&RecipeFields::instructions>},
    {"Rating"_L1, valueOf<&RecipeFields::rating>},
    {"Serves"_L1, valueOfServes},
};

QString textOf(RecordCursor &cursor, QLatin1StringView field)
{
    return displayText(ValueOrDefault(cursor.value(field), QString()));
}

int positionOf(RecordCursor &cursor, QLatin1StringView field, int defaultPosition)
{
    return storedPosition(ValueOrDefault(cursor.value(field), defaultPosition));
}

qint64 addRecipe(RecordCursor &recipes, const RecipeFields &entered)
{
    recipes.AddNew();
    for (const Column &column : columns)
        recipes.setValue(column.name, column.value(entered));
    recipes.Update();
    recipes.MoveLast();
    return recipes.value("RecipeID"_L1).toLongLong();
}

void changeRecipe(RecordCursor &recipes, const RecipeFields &shown, const RecipeFields &entered)
{
    std::vector<Column> changed;
    for (const Column &column : columns) {
        if (column.value(entered) != column.value(shown) || !recipes.value(column.name).isValid())
            changed.push_back(column);
    }
    if (changed.empty())
        return;
    recipes.Edit();
    for (const Column &column : changed)
        recipes.setValue(column.name, column.value(entered));
    recipes.Update();
}

void findRecipe(RecordCursor &recipes, qint64 key)
{
    recipes.FindFirst(criterion("RecipeID"_L1, key));
    if (recipes.NoMatch()) {
        throw DatabaseError(
            Text::tr("This recipe has been deleted by another program. Nothing was stored."));
    }
}

void showNameError(Interaction &interaction, const QString &text)
{
    interaction.showError(Text::tr("Error"), text, Icon::Information);
}

} // namespace

ShownRecipe readRecipe(RecordCursor &recipes, RecordCursor &ingredients, RecordCursor &utensils)
{
    ShownRecipe recipe;
    recipe.key = ValueOrDefault(recipes.value("RecipeID"_L1), 0).toLongLong();
    recipe.fields = {.name = textOf(recipes, "RecipeName"_L1),
                     .description = textOf(recipes, "Description"_L1),
                     .author = textOf(recipes, "Author"_L1),
                     .type = positionOf(recipes, "RecipeType"_L1, defaultRecipeType),
                     .instructions = textOf(recipes, "Instructions"_L1),
                     .rating = positionOf(recipes, "Rating"_L1, defaultRating),
                     .serves = textOf(recipes, "Serves"_L1)};
    recipe.AllVegetarian = true;
    const QString criteria = criterion("RecipeID"_L1, recipe.key);
    for (utensils.FindFirst(criteria); !utensils.NoMatch(); utensils.FindNext(criteria))
        recipe.utensils += textOf(utensils, "UtensilName"_L1);
    for (ingredients.FindFirst(criteria); !ingredients.NoMatch(); ingredients.FindNext(criteria)) {
        recipe.ingredients.append(
            {textOf(ingredients, "IngredientName"_L1), textOf(ingredients, "Quantity"_L1)});
        if (!ValueOrDefault(ingredients.value("Vegetarian"_L1), 0).toBool())
            recipe.AllVegetarian = false;
    }
    return recipe;
}

QString askRecipeName(Interaction &interaction, const QString &currentName,
                      const std::function<bool(const QString &)> &isTaken)
{
    for (;;) {
        const QString answer = interaction.ask({.prompt = Text::tr("Enter title of the recipe"),
                                                .title = Text::tr("Recipe Name"),
                                                .defaultText = currentName});
        QString name = trimSpaces(answer).toString();
        if (name.isEmpty())
            return {};
        if (ContainsInvalidChars(name).isEmpty()) {
            showNameError(interaction,
                          Text::tr("Recipe can't have the following charaters in it")
                              + u"\r\\/:*?\"<>|()"_s);
        } else if (name != currentName && isTaken(name)) {
            showRecipeNameTaken(interaction);
        } else {
            return name;
        }
    }
}

void showRecipeNameTaken(Interaction &interaction)
{
    showNameError(interaction, Text::tr("Recipe Name must be unique"));
}

bool isRecipeNameTaken(RecordCursor &recipes, const QString &name, qint64 ownKey)
{
    const QString criteria = criterion("RecipeName"_L1, Comparison::Like, name);
    recipes.FindFirst(criteria);
    while (!recipes.NoMatch() && recipes.value("RecipeID"_L1) == ownKey)
        recipes.FindNext(criteria);
    return !recipes.NoMatch();
}

std::optional<qint64> storeRecipe(DataSource &recipes, const ShownRecipe &shown,
                                  const RecipeFields &entered)
{
    Transaction transaction(recipes.Database());
    RecordCursor &cursor = recipes.Recordset();
    cursor.Requery(); // another program may have taken the name or deleted the row
    const bool isNew = shown.key == 0;
    if ((isNew || entered.name != shown.fields.name)
        && isRecipeNameTaken(cursor, entered.name, shown.key))
        return {};
    qint64 key = shown.key;
    if (isNew) {
        key = addRecipe(cursor, entered);
    } else {
        findRecipe(cursor, key);
        changeRecipe(cursor, shown.fields, entered);
    }
    transaction.commit();
    return key;
}
