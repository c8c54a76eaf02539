#include "PageSettings.h"

#include "FieldValue.h"
#include "RegistryFunctions.h"
#include "SettingsKeys.h"

using namespace Qt::Literals::StringLiterals;

static QVariant setting(const QString &valueName)
{
    return ReadRegistryValue(platform::HKEY_CURRENT_USER, htmlKey(), valueName);
}

PageSettings storedPageSettings()
{
    const auto isSecond = storedValue(FieldType::YesNo, setting(u"HTMLStyle"_s));
    return {setting(u"MainMenuTemplate"_s).toString(), setting(u"CategoryTemplate"_s).toString(),
            setting(u"RecipeTemplate"_s).toString(),
            isSecond == FieldValue(qint64{1}) ? PageStyle::Cookbook : PageStyle::PlainCard};
}
