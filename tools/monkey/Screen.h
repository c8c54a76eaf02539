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
QString catalogNameOnScreen(const QWidget &window); // in the box of either catalog
int selectedCatalogRow(const QWidget &window); // from 0, or -1
QStringList linesOnScreen(const QWidget &window); // of the recipe in either editor

// The parts of an ingredient line. No name in the file contains a parenthesis.
QString nameOf(const QString &line);
QString quantityOf(const QString &line);
