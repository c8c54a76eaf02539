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

TemplateData linkTo(const RecipeEntry &recipe)
{
    TemplateData fields;
    fields.setView("title", recipe.title);
    fields.setView("link", recipe.page);
    fields.setFlag("vegetarian", recipe.vegetarian);
    return fields;
}

TemplateData::List listOf(std::string_view field, const QStringList &texts)
{
    TemplateData::List items;
    for (const QString &text : texts)
        setText(items.emplace_back(), field, text);
    return items;
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
        recipes.push_back(linkTo(*line.recipe));
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

TemplateData::List ingredientsOf(const RecipeDetails &details)
{
    TemplateData::List items;
    for (const IngredientDetails &ingredient : details.ingredients) {
        TemplateData &item = items.emplace_back();
        setText(item, "quantity", ingredient.quantity);
        setText(item, "amount", ingredient.quantity);
        setText(item, "name", ingredient.name);
    }
    return items;
}

void setLists(TemplateData &fields, const RecipeDetails &details)
{
    const auto set = [&fields](const char *name, const char *flag, TemplateData::List items) {
        fields.setFlag(flag, !items.empty());
        fields.setList(name, std::move(items));
    };
    set("description", "hasDescription", listOf("paragraph", details.description));
    set("ingredients", "hasIngredients", ingredientsOf(details));
    set("utensils", "hasUtensils", listOf("name", details.utensils));
    set("instructions", "hasInstructions", listOf("paragraph", details.instructions));
}

} // namespace

TemplateData commonFields(const SiteMap &site)
{
    TemplateData fields;
    setText(fields, "stylesheet", SiteMap::styleSheet);
    setText(fields, "mainMenu", SiteMap::mainMenuPage);
    setText(fields, "recipeTotal", recipeCount(std::ssize(site.recipes)));
    return fields;
}

TemplateData mainMenuFields(const SiteMap &site)
{
    TemplateData fields = commonFields(site);
    setCount(fields, std::ssize(site.recipes));
    fields.setFlag("hasRecipes", !site.recipes.empty());
    TemplateData::List types;
    for (const ListEntry &type : site.types)
        types.push_back(typeFields(type));
    fields.setList("types", std::move(types));
    fields.setList("letters", letters(site));
    return fields;
}

TemplateData categoryFields(const SiteMap &site, const ListEntry &type)
{
    TemplateData fields = commonFields(site);
    fields.setView("name", type.name);
    fields.setView("link", type.page);
    setCount(fields, std::ssize(type.recipes));
    TemplateData::List recipes;
    for (const RecipePosition position : type.recipes)
        recipes.push_back(linkTo(site.recipes[position]));
    fields.setList("recipes", std::move(recipes));
    return fields;
}

TemplateData recipeFields(const SiteMap &site, std::size_t position, const RecipeDetails &details)
{
    const int type = site.recipes[position].type;
    const auto entry = std::find_if(site.types.begin(), site.types.end(),
                                    [type](const ListEntry &known) { return known.key == type; });
    TemplateData fields = commonFields(site);
    setText(fields, "title", details.title);
    fields.setView("type", entry->name);
    fields.setView("typeLink", entry->page);
    setText(fields, "author", details.author);
    setText(fields, "servings", details.servings);
    setText(fields, "rating", details.ratingText);
    fields.setFlag("vegetarian", details.vegetarian);
    setLists(fields, details);
    if (position > 0)
        fields.setPage("previous", linkTo(site.recipes[position - 1]));
    if (position + 1 < site.recipes.size())
        fields.setPage("next", linkTo(site.recipes[position + 1]));
    fields.setText("jsonLd", jsonLd(details));
    return fields;
}
