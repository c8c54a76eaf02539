#include "PageSettings.h"

#include "HtmlSettings.h"

PageSettings storedPageSettings()
{
    return {mainMenuTemplate(), categoryTemplate(), recipeTemplate(),
            isSecondHtmlStyle() ? PageStyle::Cookbook : PageStyle::PlainCard};
}
