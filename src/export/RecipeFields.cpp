#include "export/RecipeFields.h"

#include "export/JsonLd.h"
#include "export/PageFields.h"
#include "export/PageText.h"
#include "export/QuantityText.h"
#include "export/StepNumber.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(RecipeFields)
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
std::vector<std::string> setIngredients(TemplateData &fields, const RecipeDetails &details)
{
    TemplateData::List items;
    items.reserve(details.ingredients.size());
    std::vector<std::string> lines;
    lines.reserve(details.ingredients.size());
    for (const IngredientDetails &ingredient : details.ingredients) {
        SplitQuantity split = splitQuantity(ingredient.quantity);
        lines.push_back(ingredientLine(split, ingredient.entry->name));
        TemplateData &item = items.emplace_back();
        item.setView("quantity", ingredient.quantity);
        item.setText("amount", std::move(split.amount));
        item.setView("name", ingredient.entry->name);
        item.setText("preparation", std::move(split.preparation));
        item.setView("link", ingredient.entry->page);
    }
    fields.setFlag("hasIngredients", !items.empty());
    fields.setList("ingredients", std::move(items));
    return lines;
}

void setUtensils(TemplateData &fields, const RecipeDetails &details)
{
    TemplateData::List items;
    items.reserve(details.utensils.size());
    for (const ListEntry *utensil : details.utensils) {
        TemplateData &item = items.emplace_back();
        item.setView("name", utensil->name);
        item.setView("link", utensil->page);
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
            text.append(text.size() == type.size() ? ": " : ", ").append(ingredient.entry->name);
    }
    shorten(text);
    return text;
}

} // namespace

TemplateData recipeFields(const SiteMap &site, const TemplateData &common, RecipePosition position,
                          const RecipeDetails &details)
{
    const RecipeEntry &recipe = site.recipes[position];
    const ListEntry &type = site.type(recipe);
    const std::string yield = yieldOf(details.servings);
    const std::string rating = ratingOf(details);
    TemplateData fields;
    fields.setCommon(common);
    fields.setView("title", recipe.title);
    fields.setView("type", type.name);
    fields.setView("typeLink", type.page);
    fields.setView("author", details.author);
    fields.setView("servings", details.servings);
    fields.setText("yield", yield);
    fields.setText("rating", rating);
    // As in the recipe window, also if there are no ingredients.
    fields.setFlag("vegetarian", recipe.vegetarian || details.ingredients.empty());
    fields.setText("pageDescription", pageDescription(details, type.name));
    setParagraphs(fields, details);
    const std::vector<std::string> lines = setIngredients(fields, details);
    setUtensils(fields, details);
    if (position > 0)
        fields.setPage("previous", recipeLink(site.recipes[position - 1]));
    if (position + 1 < site.recipes.size())
        fields.setPage("next", recipeLink(site.recipes[position + 1]));
    fields.setText("jsonLd", recipeJsonLd({recipe, details, type.name, yield, rating, lines}));
    return fields;
}
