#include "export/JsonLd.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace {

// In schema.org a higher number is better by default; in Pantrywise 1 is the best.
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

// Escapes the characters that HTML could take for markup. In JSON they occur only within strings.
QByteArray escapedForScript(QByteArray json)
{
    return json.replace('<', "\\u003c").replace('>', "\\u003e").replace('&', "\\u0026");
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
    return escapedForScript(QJsonDocument(recipe).toJson(QJsonDocument::Compact)).toStdString();
}
