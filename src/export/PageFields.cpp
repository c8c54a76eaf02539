#include "export/PageFields.h"

#include "export/ListPages.h"

#include <QLocale>

namespace {

// The colours of the browser's own bars: those of the page in the style sheet.
void setThemeColors(TemplateData &fields, PageStyle style)
{
    const bool isCookbook = style == PageStyle::Cookbook;
    fields.setText("themeColor", isCookbook ? "#faf5ea" : "#e9e7e1");
    fields.setText("themeColorDark", isCookbook ? "#1e1a16" : "#15171b");
}

// A pot, in the colours of the style.
std::string icon(PageStyle style)
{
    const std::string color = style == PageStyle::Cookbook ? "8a3b12" : "b3322f";
    return "data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 32 32'%3E"
           "%3Cpath fill='%23"
        + color
        + "' d='M6 14h20v9a5 5 0 0 1-5 5H11a5 5 0 0 1-5-5zM2 15h3v4H2zM27 15h3v4h-3zM5 10h22v3H5z"
          "M13 6h6v3h-6z'/%3E%3C/svg%3E";
}

} // namespace

TemplateData recipeLink(const RecipeEntry &recipe)
{
    TemplateData fields;
    fields.setView("title", recipe.title);
    fields.setView("link", recipe.page);
    fields.setFlag("vegetarian", recipe.vegetarian);
    return fields;
}

TemplateData commonFields(const SiteMap &site, PageStyle style, QDate exportedOn)
{
    const QLocale english(QLocale::English);
    TemplateData fields;
    fields.setView("stylesheet", SiteMap::styleSheet);
    fields.setView("script", SiteMap::script);
    fields.setView("mainMenu", SiteMap::mainMenuPage);
    setThemeColors(fields, style);
    fields.setText("icon", icon(style));
    fields.setText("exportedOn", english.toString(exportedOn, u"d MMMM yyyy").toStdString());
    fields.setText("recipeTotal", countText(ListKind::Recipes, site.recipes.size()));
    return fields;
}
