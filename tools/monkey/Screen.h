#pragma once

#include "Tables.h"

#include <QString>
#include <QStringList>

class QWidget;

// What the child windows show, read from their controls. A window is known by its object name.

bool isRecipe(const QWidget &window);
bool isIngredients(const QWidget &window);
bool isUtensils(const QWidget &window);
bool isIngredientEditor(const QWidget &window);
bool isEditor(const QWidget &window);

bool isSaveEnabled(const QWidget &window); // false if the window has no such button

Recipe recipeOnScreen(const QWidget &window); // without the description, which no control shows
Ingredient ingredientOnScreen(const QWidget &window);
bool isCatalogRead(const QWidget &window); // false while its fields are disabled
QString utensilOnScreen(const QWidget &window);

// A row of a list box.
struct Line {
    QString name;
    QString quantity; // empty unless it is an ingredient of a recipe
    Key key = 0; // 0 if the window does not know it
};

// The selected row of either catalog. Its key is 0 if a new row is shown.
Line selectedInCatalog(const QWidget &window);
std::vector<Line> linesOnScreen(const QWidget &window); // of the recipe in either editor
