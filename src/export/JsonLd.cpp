#include "export/JsonLd.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// There more is better; here 1 is the best.
QJsonObject ratingOf(const RecipeDetails &details)
{
    constexpr int worst = 5;
    return {{u"@type"_s, u"AggregateRating"_s},
            {u"ratingValue"_s, worst + 1 - details.rating},
            {u"bestRating"_s, worst},
            {u"worstRating"_s, 1},
            {u"ratingCount"_s, 1},
            {u"ratingExplanation"_s, details.ratingText}};
}

QJsonArray ingredientsOf(const RecipeDetails &details)
{
    QJsonArray ingredients;
    for (const IngredientDetails &ingredient : details.ingredients)
        ingredients.append(QString(ingredient.quantity + u' ' + ingredient.name).trimmed());
    return ingredients;
}

// Of the characters that mean something in a page. In JSON they stand in texts alone.
std::string forScript(const QByteArray &json)
{
    std::string text;
    text.reserve(static_cast<std::size_t>(json.size()));
    const auto isSpecial = [](char c) { return c == '<' || c == '>' || c == '&'; };
    for (auto begin = json.begin(); begin != json.end();) {
        const auto special = std::find_if(begin, json.end(), isSpecial);
        text.append(begin, special);
        if (special == json.end())
            break;
        text += *special == '<' ? "\\u003c" : *special == '>' ? "\\u003e" : "\\u0026";
        begin = special + 1;
    }
    return text;
}

} // namespace

std::string jsonLd(const RecipeDetails &details)
{
    QJsonObject recipe{{u"@context"_s, u"https://schema.org"_s},
                       {u"@type"_s, u"Recipe"_s},
                       {u"name"_s, details.title},
                       {u"recipeCategory"_s, details.type},
                       {u"recipeIngredient"_s, ingredientsOf(details)},
                       {u"tool"_s, QJsonArray::fromStringList(details.utensils)},
                       {u"recipeInstructions"_s, QJsonArray::fromStringList(details.instructions)}};
    if (!details.author.isEmpty())
        recipe[u"author"] = QJsonObject{{u"@type"_s, u"Person"_s}, {u"name"_s, details.author}};
    if (!details.servings.isEmpty())
        recipe[u"recipeYield"] = details.servings;
    if (!details.description.isEmpty())
        recipe[u"description"] = details.description.join(u'\n');
    if (details.vegetarian)
        recipe[u"suitableForDiet"] = u"https://schema.org/VegetarianDiet"_s;
    if (details.rating > 0)
        recipe[u"aggregateRating"] = ratingOf(details);
    return forScript(QJsonDocument(recipe).toJson(QJsonDocument::Compact));
}
