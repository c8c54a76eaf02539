#include "Sources.h"

#include "data/SourceQuery.h"

using namespace Qt::Literals::StringLiterals;

namespace {

Source ofStatement(const char *title, const QString &statement)
{
    return {title, statement, statement};
}

Source ofJoin(const char *title, const QString &join, QLatin1StringView linkTable)
{
    return {title, inLinkOrder(join, linkTable), join};
}

Source ofTable(const char *title, const QString &table)
{
    return {title, table, u"SELECT * FROM "_s + table};
}

QString utensilJoin()
{
    return u"SELECT RecipeUtensils.RecipeID, Utensils.UtensilName FROM Utensils INNER JOIN "
           "RecipeUtensils ON Utensils.UtensilID = RecipeUtensils.UtensilID"_s;
}

} // namespace

QString ingredientJoin()
{
    return u"SELECT RecipeIngredients.RecipeID, RecipeIngredients.Quantity, "
           "Ingredients.IngredientName, Ingredients.Vegetarian FROM Ingredients INNER JOIN "
           "RecipeIngredients ON Ingredients.IngredientID = RecipeIngredients.IngredientID"_s;
}

QString listWithCounts()
{
    return u"SELECT Recipes.RecipeID, Recipes.RecipeName, Recipes.Description, Recipes.Serves, "
           "Count(RecipeIngredients.RecipeID) AS CountOfRecipeID FROM Recipes LEFT JOIN "
           "RecipeIngredients ON Recipes.RecipeID = RecipeIngredients.RecipeID GROUP BY "
           "Recipes.RecipeID, Recipes.RecipeType, Recipes.RecipeName, Recipes.Description, "
           "Recipes.Serves ORDER BY RecipeType, RecipeName"_s;
}

std::vector<Source> windowSources()
{
    return {
        ofStatement("all recipes by type and name",
                    u"SELECT * FROM Recipes ORDER BY RecipeType, RecipeName"_s),
        ofJoin("the ingredients of all recipes", ingredientJoin(), "RecipeIngredients"_L1),
        ofJoin("the utensils of all recipes", utensilJoin(), "RecipeUtensils"_L1),
        ofStatement("the recipe list with its counts", listWithCounts()),
        ofStatement("all ingredients by type and name",
                    u"SELECT * FROM Ingredients ORDER BY IngredientType, IngredientName"_s),
        ofStatement("all utensils by name", u"SELECT * FROM Utensils ORDER BY UtensilName"_s),
        ofTable("the table Recipes", u"Recipes"_s),
        ofTable("the table Ingredients", u"Ingredients"_s),
        ofTable("the table Utensils", u"Utensils"_s),
        ofTable("the table RecipeIngredients", u"RecipeIngredients"_s),
        ofTable("the table RecipeUtensils", u"RecipeUtensils"_s),
    };
}

std::vector<QString> importerSources()
{
    return {u"Ingredients"_s, u"Recipes"_s, u"RecipeIngredients"_s, u"RecipeUtensils"_s,
            u"Utensils"_s};
}
