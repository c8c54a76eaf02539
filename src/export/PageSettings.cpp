#include "export/PageSettings.h"

#include "data/settings/HtmlSettings.h"

PageSettings storedPageSettings()
{
    return {mainMenuTemplate(), categoryTemplate(), recipeTemplate(),
            isSecondHtmlStyle() ? PageStyle::Cookbook : PageStyle::PlainCard};
}
