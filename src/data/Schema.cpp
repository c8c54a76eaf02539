#include "data/Schema.h"

#include <sqlite3.h>

#include <algorithm>

namespace {

constexpr std::array recipesFields = {
    Field{"RecipeID", FieldType::Key},           Field{"RecipeName", FieldType::Text},
    Field{"Description", FieldType::Text},       Field{"Author", FieldType::Text},
    Field{"RecipeType", FieldType::WholeNumber}, Field{"Instructions", FieldType::Text, true},
    Field{"Rating", FieldType::WholeNumber},     Field{"Serves", FieldType::Number},
};

constexpr std::array ingredientsFields = {
    Field{"IngredientID", FieldType::Key},           Field{"IngredientName", FieldType::Text},
    Field{"IngredientType", FieldType::WholeNumber}, Field{"ShelfLife", FieldType::Number},
    Field{"Vegetarian", FieldType::YesNo},
};

constexpr std::array utensilsFields = {
    Field{"UtensilID", FieldType::Key},
    Field{"UtensilName", FieldType::Text},
};

constexpr std::array recipeIngredientsFields = {
    Field{"RecipeID", FieldType::Key},
    Field{"IngredientID", FieldType::Key},
    Field{"Quantity", FieldType::Text},
};

constexpr std::array recipeUtensilsFields = {
    Field{"RecipeID", FieldType::Key},
    Field{"UtensilID", FieldType::Key},
};

constexpr std::array<Table, tableCount> tables = {
    Table{"Recipes", recipesFields, true},
    Table{"Ingredients", ingredientsFields, true},
    Table{"Utensils", utensilsFields, true},
    Table{"RecipeIngredients", recipeIngredientsFields, false},
    Table{"RecipeUtensils", recipeUtensilsFields, false},
};

std::string_view columnType(FieldType type)
{
    switch (type) {
    case FieldType::Key:
    case FieldType::WholeNumber:
    case FieldType::YesNo:
        return "INTEGER";
    case FieldType::Text:
        return "TEXT COLLATE NOCASE";
    case FieldType::Number:
        return "NUMERIC";
    }
    return {};
}

std::string createTable(const Table &table)
{
    std::string statement = "CREATE TABLE " + std::string(table.name) + " (";
    for (const Field &field : table.fields) {
        if (&field != &table.fields.front())
            statement += ", ";
        statement += std::string(field.name) + " " + declaration(table, field);
    }
    return statement + ");";
}

bool isWordCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

} // namespace

std::span<const Table, tableCount> schemaTables()
{
    return tables;
}

std::string declaration(const Table &table, const Field &field)
{
    const std::string type(columnType(field.type));
    const bool isCounter = table.hasKey && &field == &table.fields.front();
    // AUTOINCREMENT never reuses a key: recipes still refer to an ingredient that was deleted.
    return isCounter ? type + " PRIMARY KEY AUTOINCREMENT" : type;
}

int tableNumber(std::string_view name)
{
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (isSameName(tables[i].name, name))
            return static_cast<int>(i);
    }
    return -1;
}

std::vector<std::string_view> words(std::string_view sql)
{
    std::vector<std::string_view> result;
    for (std::size_t i = 0; i < sql.size();) {
        std::size_t end = i;
        while (end < sql.size() && isWordCharacter(sql[end]))
            ++end;
        if (end > i)
            result.push_back(sql.substr(i, end - i));
        i = std::max(end, i + 1);
    }
    return result;
}

std::array<bool, tableCount> namedTables(std::string_view sql)
{
    std::array<bool, tableCount> named{};
    for (const std::string_view word : words(sql)) {
        const int table = tableNumber(word);
        if (table >= 0)
            named[static_cast<std::size_t>(table)] = true;
    }
    return named;
}

bool isSameName(std::string_view a, std::string_view b)
{
    return a.size() == b.size()
        && (a == b || sqlite3_strnicmp(a.data(), b.data(), static_cast<int>(a.size())) == 0);
}

std::string creationScript()
{
    std::string script = "BEGIN;";
    for (const Table &table : tables)
        script += createTable(table);
    for (const std::string table : {"RecipeIngredients", "RecipeUtensils"})
        script.append("CREATE INDEX ")
            .append(table)
            .append("OfRecipe ON ")
            .append(table)
            .append(" (RecipeID);");
    script += "PRAGMA application_id = " + std::to_string(applicationId) + ";";
    script += "PRAGMA user_version = " + std::to_string(schemaVersion) + ";";
    return script + "COMMIT;";
}
