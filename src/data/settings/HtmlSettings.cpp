#include "data/settings/HtmlSettings.h"

#include "data/DatabaseFunctions.h"
#include "data/FieldValue.h"
#include "data/settings/RegistryFunctions.h"
#include "data/settings/SettingsKeys.h"

using namespace Qt::Literals::StringLiterals;

static QVariant setting(const QString &valueName, const QVariant &defaultValue)
{
    return ValueOrDefault(ReadRegistryValue(platform::HKEY_CURRENT_USER, htmlKey(), valueName),
                          defaultValue);
}

QString mainMenuTemplate()
{
    return setting(u"MainMenuTemplate"_s, u""_s).toString();
}

QString categoryTemplate()
{
    return setting(u"CategoryTemplate"_s, u""_s).toString();
}

QString recipeTemplate()
{
    return setting(u"RecipeTemplate"_s, u""_s).toString();
}

bool isSecondHtmlStyle()
{
    const QVariant stored = setting(u"HTMLStyle"_s, false);
    return convertToField(FieldType::YesNo, stored) == FieldValue(qint64{1});
}
