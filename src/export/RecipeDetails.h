#pragma once

#include <QList>
#include <QString>
#include <QStringList>

struct IngredientDetails {
    QString quantity; // may be empty
    QString name;
};

// What a page says of one recipe, cleaned for pages. Texts are empty where nothing is stored.
struct RecipeDetails {
    QString title;
    QString type; // the name of it
    QString author;
    QString servings; // empty for none
    int rating = 0; // position in recipeRatings(), 0 for none
    QString ratingText; // empty for none
    bool vegetarian = true; // all ingredients are; also where there are none
    QStringList description; // paragraphs
    QList<IngredientDetails> ingredients; // in their order
    QStringList utensils;
    QStringList instructions; // paragraphs
};
