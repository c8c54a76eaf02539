#pragma once

#include "composition/frmChangeIngredients.h"
#include "recipes/frmRecipe.h"
#include "support/WindowFixture.h"

using namespace Qt::Literals::StringLiterals;

inline const QByteArray dishes =
    "INSERT INTO Recipes (RecipeID, RecipeName) VALUES (17, 'Utensils'), (18, 'Stew');"
    "INSERT INTO Ingredients VALUES (1, 'Salt', 0, 0, 1), (2, 'Beans (white)', 0, 0, 1),"
    "(3, 'Beans', 0, 0, 1), (4, 'Cook''s spice', 0, 0, 1);"
    "INSERT INTO RecipeIngredients VALUES (17, 2, '1 (large) can'), (18, 3, '1 cup'),"
    "(17, 4, 'as much as a large spoon holds');"
    "INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'Large pot'), (3, 'Knife');"
    "INSERT INTO RecipeUtensils VALUES (17, 1), (18, 3);";
inline constexpr auto allIngredients = "SELECT * FROM RecipeIngredients ORDER BY rowid";
inline constexpr auto oldLinks =
    u"17|2|1 (large) can, 18|3|1 cup, 17|4|as much as a large spoon holds";

// The record window and an editor on its recipe.
template <class Editor>
Editor &compose(WindowFixture &fixture)
{
    fixture.frame.load<frmRecipe>().setCurrentRecipeID(17);
    fixture.open<frmRecipe>();
    return fixture.open<Editor>();
}
