#pragma once

#include <QStringList>

// What the number stands for that is stored for an ingredient: the position in this list.
QStringList ingredientTypes();
