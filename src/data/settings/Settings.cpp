#include "data/settings/Settings.h"

#include "data/DatabaseFunctions.h"
#include "data/FieldValue.h"
#include "data/settings/RegistryFunctions.h"
#include "platform/ApplicationInformation.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

struct RegistryValue {
    QLatin1StringView key;
    QLatin1StringView name;
};

constexpr RegistryValue ingredientOrderValue{"Sorting"_L1, "Ingredients"_L1};
constexpr RegistryValue recipeOrderValue{"Sorting"_L1, "Recipes"_L1};
constexpr RegistryValue categoryTemplateValue{"HTML"_L1, "CategoryTemplate"_L1};
constexpr RegistryValue mainMenuTemplateValue{"HTML"_L1, "MainMenuTemplate"_L1};
constexpr RegistryValue recipeTemplateValue{"HTML"_L1, "RecipeTemplate"_L1};
constexpr RegistryValue styleValue{"HTML"_L1, "HTMLStyle"_L1}; // true for the second style

QString keyPath(const RegistryValue &value)
{
    return "Software\\Quillmoor\\"_L1 + platform::productName() + u'\\' + value.key;
}

QVariant read(const RegistryValue &value, const QVariant &defaultValue)
{
    return ValueOrDefault(
        ReadRegistryValue(platform::HKEY_CURRENT_USER, keyPath(value), value.name), defaultValue);
}

void write(const RegistryValue &value, const QVariant &content)
{
    CreateRegistryKey(platform::HKEY_CURRENT_USER, keyPath(value));
    WriteRegistryValue(platform::HKEY_CURRENT_USER, keyPath(value), value.name, content,
                       platform::REG_SZ);
}

// Any decimal number but 0 means by name.
SortOrder readOrder(const RegistryValue &value)
{
    static const QRegularExpression decimal(u"\\A *[+-]?[0-9]+(\\.[0-9]+)? *\\z"_s);
    const QString text = read(value, 0).toString();
    const bool byName = decimal.match(text).hasMatch() && text.toDouble() != 0;
    return byName ? SortOrder::Name : SortOrder::CategoryThenName;
}

PageStyle readStyle()
{
    const auto isSecond = convertToField(FieldType::YesNo, read(styleValue, false));
    return isSecond == FieldValue(qint64{1}) ? PageStyle::Cookbook : PageStyle::PlainCard;
}

} // namespace

Settings Settings::load()
{
    return {.ingredientOrder = readOrder(ingredientOrderValue),
            .recipeOrder = readOrder(recipeOrderValue),
            .pages = {.mainMenuTemplate = read(mainMenuTemplateValue, u""_s).toString(),
                      .categoryTemplate = read(categoryTemplateValue, u""_s).toString(),
                      .recipeTemplate = read(recipeTemplateValue, u""_s).toString(),
                      .style = readStyle()}};
}

void Settings::save() const
{
    write(ingredientOrderValue, static_cast<int>(ingredientOrder));
    write(recipeOrderValue, static_cast<int>(recipeOrder));
    write(categoryTemplateValue, pages.categoryTemplate);
    write(mainMenuTemplateValue, pages.mainMenuTemplate);
    write(recipeTemplateValue, pages.recipeTemplate);
    write(styleValue, pages.style == PageStyle::Cookbook);
}

QString recipeOrderByClause()
{
    return Settings::load().recipeOrder == SortOrder::Name ? u" RecipeName"_s
                                                           : u" RecipeType, RecipeName"_s;
}

QString ingredientOrderByClause()
{
    return Settings::load().ingredientOrder == SortOrder::Name
        ? u" IngredientName"_s
        : u" IngredientType, IngredientName"_s;
}
