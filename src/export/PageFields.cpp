#include "export/PageFields.h"

#include "data/TextComparison.h"
#include "export/JsonLd.h"
#include "export/TitleLetters.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <span>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PageFields)
};

void setText(TemplateData &fields, std::string_view name, const QString &text)
{
    fields.setText(name, text.toStdString());
}

QString recipeCount(qsizetype count)
{
    return count == 1 ? Text::tr("1 recipe")
                      : Text::tr("%1 recipes").arg(QLocale(QLocale::English).toString(count));
}

void setCount(TemplateData &fields, qsizetype count)
{
    setText(fields, "count", QLocale(QLocale::English).toString(count));
    setText(fields, "recipeCount", recipeCount(count));
}

std::string letterText(const RecipeEntry &recipe)
{
    const char32_t letter = titleLetter(QString::fromStdString(recipe.title));
    return letter == 0 ? "#" : QString::fromUcs4(&letter, 1).toStdString();
}

struct IndexLine {
    std::string letter;
    std::string title;
    const RecipeEntry *recipe;
};

// Sorted by letter, then by title.
std::vector<IndexLine> indexLines(const SiteMap &site)
{
    std::vector<IndexLine> lines;
    lines.reserve(site.recipes.size());
    for (const RecipeEntry &recipe : site.recipes)
        lines.push_back({letterText(recipe), recipe.title, &recipe});
    std::sort(lines.begin(), lines.end(), [](const IndexLine &a, const IndexLine &b) {
        const int order = compareTexts(a.letter, b.letter);
        return order != 0 ? order < 0 : compareTexts(a.title, b.title) < 0;
    });
    return lines;
}

TemplateData letterFields(std::span<const IndexLine> lines, std::size_t number)
{
    TemplateData fields;
    fields.setText("letter", lines.front().letter);
    fields.setText("anchor", "letter-" + std::to_string(number));
    TemplateData::List recipes;
    for (const IndexLine &line : lines)
        recipes.push_back(recipeLink(*line.recipe));
    fields.setList("recipes", std::move(recipes));
    return fields;
}

TemplateData::List letters(const SiteMap &site)
{
    const std::vector<IndexLine> lines = indexLines(site);
    TemplateData::List result;
    for (auto first = lines.begin(); first != lines.end();) {
        const auto last = std::find_if(first, lines.end(), [&](const IndexLine &line) {
            return !textsEqual(line.letter, first->letter);
        });
        result.push_back(letterFields({first, last}, result.size() + 1));
        first = last;
    }
    return result;
}

TemplateData typeFields(const ListEntry &type)
{
    TemplateData fields;
    fields.setView("name", type.name);
    fields.setView("link", type.page);
    setCount(fields, std::ssize(type.recipes));
    return fields;
}

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
    setText(fields, "stylesheet", SiteMap::styleSheet);
    setText(fields, "script", SiteMap::script);
    setText(fields, "mainMenu", SiteMap::mainMenuPage);
    setThemeColors(fields, style);
    fields.setText("icon", icon(style));
    setText(fields, "exportedOn", english.toString(exportedOn, u"d MMMM yyyy"));
    setText(fields, "recipeTotal", recipeCount(std::ssize(site.recipes)));
    return fields;
}

TemplateData mainMenuFields(const SiteMap &site, const TemplateData &common)
{
    TemplateData fields;
    fields.setCommon(common);
    setCount(fields, std::ssize(site.recipes));
    setText(fields, "pageDescription", recipeCount(std::ssize(site.recipes)));
    fields.setFlag("hasRecipes", !site.recipes.empty());
    TemplateData::List types;
    for (const ListEntry &type : site.types)
        types.push_back(typeFields(type));
    fields.setList("types", std::move(types));
    fields.setList("letters", letters(site));
    return fields;
}

TemplateData categoryFields(const SiteMap &site, const TemplateData &common, const ListEntry &type)
{
    TemplateData fields;
    fields.setCommon(common);
    fields.setView("name", type.name);
    fields.setView("link", type.page);
    setCount(fields, std::ssize(type.recipes));
    fields.setText("pageDescription",
                   type.name + ": " + recipeCount(std::ssize(type.recipes)).toStdString());
    TemplateData::List recipes;
    for (const RecipePosition position : type.recipes)
        recipes.push_back(recipeLink(site.recipes[position]));
    fields.setList("recipes", std::move(recipes));
    fields.setText("jsonLd", itemListJsonLd(type.name, site, type.recipes));
    return fields;
}
