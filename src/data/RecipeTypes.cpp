#include "data/RecipeTypes.h"

#include <QCoreApplication>

static QString tr(const char *text)
{
    return QCoreApplication::translate("RecipeTypes", text);
}

QStringList recipeTypes()
{
    return {tr("Misc"),
            tr("Soup"),
            tr("Salad"),
            tr("Pasta"),
            tr("Sauce"),
            tr("Dip"),
            tr("Salad Dressing"),
            tr("Meat"),
            tr("Poultry"),
            tr("Seafood"),
            tr("Grains/Bean/Rice"),
            tr("Desert"),
            tr("Pastry"),
            tr("Bread"),
            tr("Cookies"),
            tr("Cakes")};
}

QStringList recipeRatings()
{
    return {tr("Unrated"),     tr("1 - Rave reviews"), tr("2 - Well recieved"),
            tr("3 - Average"), tr("4 - Not Liked"),    tr("5 - Disaster")};
}
