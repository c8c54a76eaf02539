#include "export/PageFields.h"

#include "export/SiteLists.h"

#include <QLocale>

namespace {

// Colours of a style sheet that the pages repeat.
struct StyleColors {
    std::string_view background; // for the browser's own bars
    std::string_view darkBackground;
    std::string_view accent;
};

StyleColors colorsOf(PageStyle style)
{
    return style == PageStyle::Cookbook ? StyleColors{"#faf5ea", "#1e1a16", "#8a3b12"}
                                        : StyleColors{"#e9e7e1", "#15171b", "#b02a2a"};
}

// A pot.
std::string icon(std::string_view color)
{
    return "data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 32 32'%3E"
           "%3Cpath fill='%23"
        + std::string(color.substr(1))
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
    const StyleColors colors = colorsOf(style);
    fields.setView("themeColor", colors.background);
    fields.setView("themeColorDark", colors.darkBackground);
    fields.setText("icon", icon(colors.accent));
    fields.setText("exportedOn", english.toString(exportedOn, u"d MMMM yyyy").toStdString());
    fields.setText("recipeTotal", countText(ListKind::Recipes, site.recipes.size()));
    return fields;
}
