#include "RecipeInserter.h"

#include "data/Schema.h"

#include <algorithm>

SQLite::Database createDatabase(const std::string &path)
{
    SQLite::Database database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec("PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL;"
                  "PRAGMA cache_size = -16000");
    database.exec(creationScript());
    return database;
}

RecipeInserter::RecipeInserter(SQLite::Database database)
    : m_database(std::move(database))
    , m_recipe(m_database.getHandle(),
               "INSERT INTO Recipes (RecipeName, Description, Author, RecipeType, Instructions, "
               "Rating, Serves) VALUES (?, ?, ?, ?, ?, ?, ?)")
    , m_ingredient(m_database.getHandle(),
                   "INSERT INTO Ingredients (IngredientName, IngredientType, ShelfLife, "
                   "Vegetarian) VALUES (?, ?, ?, ?)")
    , m_utensil(m_database.getHandle(), "INSERT INTO Utensils (UtensilName) VALUES (?)")
    , m_recipeIngredient(m_database.getHandle(),
                         "INSERT INTO RecipeIngredients (RecipeID, IngredientID, Quantity) "
                         "VALUES (?, ?, ?)")
    , m_recipeUtensil(m_database.getHandle(),
                      "INSERT INTO RecipeUtensils (RecipeID, UtensilID) VALUES (?, ?)")
{
}

qint64 RecipeInserter::addIngredient(int number)
{
    const GeneratedIngredient ingredient = generatedIngredient(number);
    m_ingredient.bind(1, ingredient.name);
    m_ingredient.bind(2, ingredient.type);
    m_ingredient.bind(3, ingredient.shelfLife);
    m_ingredient.bind(4, ingredient.vegetarian ? 1 : 0);
    m_ingredient.run();
    return lastKey();
}

qint64 RecipeInserter::addUtensil(int number)
{
    const std::string name = generatedUtensilName(number);
    m_utensil.bind(1, name);
    m_utensil.run();
    return lastKey();
}

void RecipeInserter::addRecipe(const GeneratedRecipe &recipe,
                               const std::vector<qint64> &ingredientKeys,
                               const std::vector<qint64> &utensilKeys)
{
    m_recipe.bind(1, recipe.name);
    m_recipe.bind(2, recipe.description);
    m_recipe.bind(3, recipe.author);
    m_recipe.bind(4, recipe.type);
    m_recipe.bind(5, recipe.instructions);
    m_recipe.bind(6, recipe.rating);
    m_recipe.bind(7, recipe.serves);
    m_recipe.run();
    const qint64 key = lastKey();
    for (const GeneratedLine &line : recipe.ingredients) {
        m_recipeIngredient.bind(1, key);
        m_recipeIngredient.bind(2, ingredientKeys[static_cast<std::size_t>(line.ingredient)]);
        m_recipeIngredient.bind(3, line.quantity);
        m_recipeIngredient.run();
    }
    for (const int utensil : recipe.utensils) {
        m_recipeUtensil.bind(1, key);
        m_recipeUtensil.bind(2, utensilKeys[static_cast<std::size_t>(utensil)]);
        m_recipeUtensil.run();
    }
}

void generateDatabase(const std::string &path, int recipes)
{
    RecipeInserter inserter(createDatabase(path));
    const CatalogSizes catalogs = catalogSizes(recipes);
    inserter.begin();
    std::vector<qint64> ingredientKeys(static_cast<std::size_t>(catalogs.ingredients));
    std::generate(ingredientKeys.begin(), ingredientKeys.end(),
                  [&, i = 0]() mutable { return inserter.addIngredient(i++); });
    std::vector<qint64> utensilKeys(static_cast<std::size_t>(catalogs.utensils));
    std::generate(utensilKeys.begin(), utensilKeys.end(),
                  [&, i = 0]() mutable { return inserter.addUtensil(i++); });
    for (int i = 0; i < recipes; ++i)
        inserter.addRecipe(generatedRecipe(i, catalogs), ingredientKeys, utensilKeys);
    inserter.commit();
}
