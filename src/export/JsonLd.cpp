#include "export/JsonLd.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace {

// Escapes a character that HTML could take for markup. In JSON it occurs only within strings.
void escape(std::string &json, char character, std::string_view replacement)
{
    for (std::size_t at = json.find(character); at != std::string::npos;
         at = json.find(character, at + replacement.size()))
        json.replace(at, 1, replacement);
}

class JsonWriter
{
public:
    void begin(std::string_view type)
    {
        m_writer.StartObject();
        add("@type", type);
    }
    void beginPage(std::string_view type)
    {
        m_writer.StartObject();
        add("@context", "https://schema.org");
        add("@type", type);
    }
    void end() { m_writer.EndObject(); }

    void key(std::string_view name) { m_writer.Key(name.data(), lengthOf(name)); }
    void text(std::string_view text) { m_writer.String(text.data(), lengthOf(text)); }

    void add(std::string_view name, std::string_view value)
    {
        key(name);
        text(value);
    }
    void add(std::string_view name, int value)
    {
        key(name);
        m_writer.Int(value);
    }
    void addUnlessEmpty(std::string_view name, std::string_view value)
    {
        if (!value.empty())
            add(name, value);
    }

    // Calls the function for each item, which writes one value.
    template <typename Items, typename Function>
    void addList(std::string_view name, const Items &items, Function writeItem)
    {
        key(name);
        m_writer.StartArray();
        for (const auto &item : items)
            writeItem(item);
        m_writer.EndArray();
    }

    std::string script() const
    {
        std::string json(m_buffer.GetString(), m_buffer.GetSize());
        escape(json, '<', "\\u003c");
        escape(json, '>', "\\u003e");
        escape(json, '&', "\\u0026");
        return json;
    }

private:
    static rapidjson::SizeType lengthOf(std::string_view text)
    {
        return static_cast<rapidjson::SizeType>(text.size());
    }

    static constexpr std::size_t usualSize = 4096; // bytes

    rapidjson::StringBuffer m_buffer{nullptr, usualSize};
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_buffer};
};

std::string joined(std::span<const std::string> texts, char separator)
{
    std::string all;
    for (const std::string &text : texts) {
        if (!all.empty())
            all += separator;
        all += text;
    }
    return all;
}

// The position of the type in ingredientTypes().
bool canBeMainIngredient(int type)
{
    constexpr int seasoning = 3;
    constexpr int staple = 10;
    return type != seasoning && type != staple;
}

// The type, "Vegetarian", and the first ingredients but for seasonings and staples.
std::string keywordsOf(const JsonRecipe &recipe)
{
    constexpr int mostIngredients = 3;
    std::string keywords(recipe.type);
    if (recipe.recipe.vegetarian)
        keywords += ", Vegetarian";
    int count = 0;
    for (const IngredientDetails &ingredient : recipe.details.ingredients) {
        const std::string &name = ingredient.entry->name;
        if (canBeMainIngredient(ingredient.entry->type) && ++count <= mostIngredients)
            keywords.append(", ").append(name, 0, name.find(','));
    }
    return keywords;
}

// In schema.org a higher number is better by default; in Pantrywise 1 is the best.
void addRating(JsonWriter &json, const JsonRecipe &recipe)
{
    constexpr int worst = 5;
    json.key("aggregateRating");
    json.begin("AggregateRating");
    json.add("ratingValue", worst + 1 - recipe.details.rating);
    json.add("bestRating", worst);
    json.add("worstRating", 1);
    json.add("ratingCount", 1);
    json.add("ratingExplanation", recipe.rating);
    json.end();
}

} // namespace

std::string recipeJsonLd(const JsonRecipe &recipe)
{
    const RecipeDetails &details = recipe.details;
    JsonWriter json;
    json.beginPage("Recipe");
    json.add("name", recipe.recipe.title);
    if (!details.author.empty()) {
        json.key("author");
        json.begin("Person");
        json.add("name", details.author);
        json.end();
    }
    json.addUnlessEmpty("description", joined(details.description, '\n'));
    json.add("recipeCategory", recipe.type);
    json.add("keywords", keywordsOf(recipe));
    json.addUnlessEmpty("recipeYield", recipe.yield);
    if (recipe.recipe.vegetarian)
        json.add("suitableForDiet", "https://schema.org/VegetarianDiet");
    json.addList("recipeIngredient", recipe.ingredients,
                 [&](const std::string &line) { json.text(line); });
    json.addList("tool", details.utensils,
                 [&](const ListEntry *utensil) { json.text(utensil->name); });
    json.addList("recipeInstructions", details.instructions, [&](const std::string &paragraph) {
        json.begin("HowToStep");
        json.add("text", paragraph);
        json.end();
    });
    if (details.rating > 0)
        addRating(json, recipe);
    json.end();
    return json.script();
}

std::string itemListJsonLd(std::string_view name, std::span<const RecipeEntry *const> recipes)
{
    JsonWriter json;
    json.beginPage("ItemList");
    json.add("name", name);
    json.add("numberOfItems", static_cast<int>(recipes.size()));
    int number = 0;
    json.addList("itemListElement", recipes, [&](const RecipeEntry *recipe) {
        json.begin("ListItem");
        json.add("position", ++number);
        json.add("url", recipe->page);
        json.end();
    });
    json.end();
    return json.script();
}
