#include "data/IngredientTypes.h"

#include <QCoreApplication>

static QString tr(const char *text)
{
    return QCoreApplication::translate("IngredientTypes", text);
}

QStringList ingredientTypes()
{
    return {tr("Misc"),        tr("Fruit"),   tr("Vegetable"), tr("Seasoning"),
            tr("Meat"),        tr("Poultry"), tr("Fish"),      tr("Dairy"),
            tr("Canned good"), tr("Grain"),   tr("Staple"),    tr("Legume")};
}
