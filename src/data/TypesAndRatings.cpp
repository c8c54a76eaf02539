#include "data/TypesAndRatings.h"

#include <QCoreApplication>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TypesAndRatings)
};

} // namespace

QStringList recipeTypes()
{
    return {Text::tr("Misc"),
            Text::tr("Soup"),
            Text::tr("Salad"),
            Text::tr("Pasta"),
            Text::tr("Sauce"),
            Text::tr("Dip"),
            Text::tr("Salad Dressing"),
            Text::tr("Meat"),
            Text::tr("Poultry"),
            Text::tr("Seafood"),
            Text::tr("Grains/Bean/Rice"),
            Text::tr("Desert"),
            Text::tr("Pastry"),
            Text::tr("Bread"),
            Text::tr("Cookies"),
            Text::tr("Cakes")};
}

QStringList recipeRatings()
{
    return {Text::tr("Unrated"),     Text::tr("1 - Rave reviews"), Text::tr("2 - Well recieved"),
            Text::tr("3 - Average"), Text::tr("4 - Not Liked"),    Text::tr("5 - Disaster")};
}

QStringList ingredientTypes()
{
    return {Text::tr("Misc"),      Text::tr("Fruit"),  Text::tr("Vegetable"),
            Text::tr("Seasoning"), Text::tr("Meat"),   Text::tr("Poultry"),
            Text::tr("Fish"),      Text::tr("Dairy"),  Text::tr("Canned good"),
            Text::tr("Grain"),     Text::tr("Staple"), Text::tr("Legume")};
}
