#include "data/TypesAndRatings.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TypesAndRatings)
};

} // namespace

// The types belong to the stored recipes, as units do, and are the same in every language.
QStringList recipeTypes()
{
    return {u"Misc"_s,
            u"Soup"_s,
            u"Salad"_s,
            u"Pasta"_s,
            u"Sauce"_s,
            u"Dip"_s,
            u"Salad Dressing"_s,
            u"Meat"_s,
            u"Poultry"_s,
            u"Seafood"_s,
            u"Grains/Bean/Rice"_s,
            u"Desert"_s,
            u"Pastry"_s,
            u"Bread"_s,
            u"Cookies"_s,
            u"Cakes"_s};
}

QStringList recipeRatings()
{
    return {Text::tr("Unrated"),     Text::tr("1 - Rave reviews"), Text::tr("2 - Well recieved"),
            Text::tr("3 - Average"), Text::tr("4 - Not Liked"),    Text::tr("5 - Disaster")};
}

QStringList ingredientTypes()
{
    return {u"Misc"_s, u"Fruit"_s, u"Vegetable"_s,   u"Seasoning"_s, u"Meat"_s,   u"Poultry"_s,
            u"Fish"_s, u"Dairy"_s, u"Canned good"_s, u"Grain"_s,     u"Staple"_s, u"Legume"_s};
}
