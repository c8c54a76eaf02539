#include "export/PageFields.h"

#include "export/JsonLd.h"
#include "export/ListFields.h"
#include "export/PageText.h"
#include "export/QuantityText.h"
#include "export/StepNumber.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PageFields)
};

TemplateData::List listOf(const std::vector<std::string> &paragraphs)
{
    TemplateData::List items;
    items.reserve(paragraphs.size());
    for (const std::string &paragraph : paragraphs)
        items.emplace_back().setView("paragraph", paragraph);
    return items;
}

// Sets the ingredients and returns their lines.
std::vector<std::string> setIngredients(TemplateData &fields, const SiteMap &site,
                                        const RecipeDetails &details)
{
    TemplateData::List items;
    items.reserve(details.ingredients.size());
    std::vector<std::string> lines;
    lines.reserve(details.ingredients.size());
    for (const IngredientDetails &ingredient : details.ingredients) {
        SplitQuantity split = splitQuantity(ingredient.quantity);
        lines.push_back(ingredientLine(split, ingredient.name));
        TemplateData &item = items.emplace_back();
        item.setView("quantity", ingredient.quantity);
        item.setText("amount", std::move(split.amount));
        item.setView("name", ingredient.name);
        item.setText("preparation", std::move(split.preparation));
        if (const ListEntry *entry = site.ingredient(ingredient.key))
            item.setView("link", entry->page);
    }
    fields.setFlag("hasIngredients", !items.empty());
    fields.setList("ingredients", std::move(items));
    return lines;
}

void setUtensils(TemplateData &fields, const SiteMap &site, const RecipeDetails &details)
{
    TemplateData::List items;
    items.reserve(details.utensils.size());
    for (const UtensilDetails &utensil : details.utensils) {
        TemplateData &item = items.emplace_back();
        item.setView("name", utensil.name);
        if (const ListEntry *entry = site.utensil(utensil.key))
            item.setView("link", entry->page);
    }
    fields.setFlag("hasUtensils", !items.empty());
    fields.setList("utensils", std::move(items));
}

void setParagraphs(TemplateData &fields, const RecipeDetails &details)
{
    const std::vector<std::string> &steps = details.instructions;
    fields.setFlag("hasDescription", !details.description.empty());
    fields.setList("description", listOf(details.description));
    fields.setFlag("hasInstructions", !steps.empty());
    fields.setFlag("hasOwnNumbers", std::any_of(steps.begin(), steps.end(), beginsWithStepNumber));
    fields.setList("instructions", listOf(steps));
}

// The servings are not always a number: other programs can store "4 to 6 people".
std::string yieldOf(const std::string &servings)
{
    if (servings.empty() || servings.back() < '0' || servings.back() > '9')
        return servings;
    static const QString one = Text::tr("1 serving");
    static const QString several = Text::tr("%1 servings");
    return (servings == "1" ? one : several.arg(QString::fromStdString(servings))).toStdString();
}

std::string ratingOf(const RecipeDetails &details)
{
    static const QStringList ratings = pageRatings();
    return details.rating == 0 ? std::string() : ratings[details.rating].toStdString();
}

// Shortens a text to what search engines show, at the end of a word.
void shorten(std::string &text)
{
    constexpr std::size_t longest = 160;
    if (text.size() <= longest)
        return;
    const std::size_t space = text.rfind(' ', longest);
    std::size_t end = space == std::string::npos ? longest : space;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        --end; // into a character
    text.replace(end, std::string::npos, "…");
}

// The first words of the description, or the type and the ingredients.
std::string pageDescription(const RecipeDetails &details, const std::string &type)
{
    std::string text;
    for (const std::string &paragraph : details.description)
        text.append(text.empty() ? "" : " ").append(paragraph);
    if (text.empty()) {
        text = type;
        for (const IngredientDetails &ingredient : details.ingredients)
            text.append(text.size() == type.size() ? ": " : ", ").append(ingredient.name);
    }
    shorten(text);
    return text;
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

TemplateData recipeFields(const SiteMap &site, const TemplateData &common, std::size_t position,
                          const RecipeDetails &details)
{
    const RecipeEntry &entry = site.recipes[position];
    const ListEntry &type = *site.type(entry.type);
    const std::string yield = yieldOf(details.servings);
    const std::string rating = ratingOf(details);
    TemplateData fields;
    fields.setCommon(common);
    fields.setView("title", entry.title);
    fields.setView("type", type.name);
    fields.setView("typeLink", type.page);
    fields.setView("author", details.author);
    fields.setView("servings", details.servings);
    fields.setText("yield", yield);
    fields.setText("rating", rating);
    fields.setFlag("vegetarian", details.vegetarian);
    fields.setText("pageDescription", pageDescription(details, type.name));
    setParagraphs(fields, details);
    const std::vector<std::string> lines = setIngredients(fields, site, details);
    setUtensils(fields, site, details);
    if (position > 0)
        fields.setPage("previous", recipeLink(site.recipes[position - 1]));
    if (position + 1 < site.recipes.size())
        fields.setPage("next", recipeLink(site.recipes[position + 1]));
    fields.setText("jsonLd", recipeJsonLd({details, entry.title, type.name, yield, rating, lines}));
    return fields;
}
