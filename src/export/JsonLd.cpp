#include "JsonLd.h"

#include "RecipeTypes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject ofType(const QString &type, const QString &property, const QString &text)
{
    return {{u"@type"_s, type}, {property, text}};
}

// There more is better; here 1 is the best.
QJsonObject ratingOf(int rating)
{
    constexpr int worst = 5;
    return {{u"@type"_s, u"AggregateRating"_s},
            {u"ratingValue"_s, worst + 1 - rating},
            {u"bestRating"_s, worst},
            {u"worstRating"_s, 1},
            {u"ratingCount"_s, 1},
            {u"ratingExplanation"_s, recipeRatings().at(rating)}};
}

QJsonArray ingredientsOf(const RecipeFacts &facts)
{
    QJsonArray ingredients;
    for (const IngredientFacts &ingredient : facts.ingredients)
        ingredients.append(QString(ingredient.quantity + u' ' + ingredient.name).trimmed());
    return ingredients;
}

QJsonArray objects(const QStringList &texts, const QString &type, const QString &property)
{
    QJsonArray objects;
    for (const QString &text : texts)
        objects.append(ofType(type, property, text));
    return objects;
}

} // namespace

QByteArray jsonLd(const RecipeFacts &facts, const QString &typeName)
{
    QJsonObject recipe{
        {u"@context"_s, u"https://schema.org"_s},
        {u"@type"_s, u"Recipe"_s},
        {u"name"_s, facts.title},
        {u"recipeCategory"_s, typeName},
        {u"recipeIngredient"_s, ingredientsOf(facts)},
        {u"tool"_s, objects(facts.utensils, u"HowToTool"_s, u"name"_s)},
        {u"recipeInstructions"_s, objects(facts.instructions, u"HowToStep"_s, u"text"_s)}};
    if (!facts.author.isEmpty())
        recipe[u"author"] = ofType(u"Person"_s, u"name"_s, facts.author);
    if (!facts.servings.isEmpty())
        recipe[u"recipeYield"] = facts.servings;
    if (!facts.description.isEmpty())
        recipe[u"description"] = facts.description.join(u'\n');
    if (facts.vegetarian)
        recipe[u"suitableForDiet"] = u"https://schema.org/VegetarianDiet"_s;
    if (facts.rating > 0)
        recipe[u"aggregateRating"] = ratingOf(facts.rating);
    // These stand in texts alone; the first would end the script element.
    return QJsonDocument(recipe)
        .toJson(QJsonDocument::Compact)
        .replace('<', "\\u003c")
        .replace('>', "\\u003e")
        .replace('&', "\\u0026");
}
