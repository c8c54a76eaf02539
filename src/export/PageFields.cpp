#include "export/PageFields.h"

#include "data/TextComparison.h"
#include "export/JsonLd.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <span>

using namespace Qt::Literals::StringLiterals;
using kainjow::mustache::data;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PageFields)
};

// The text must not contain a null character.
data textField(const QString &text)
{
    return {text.toUtf8().constData()};
}

// An empty text sets no field, so that a section can ask whether there is one.
void setText(data &fields, const char *name, const QString &text)
{
    if (!text.isEmpty())
        fields[name] = textField(text);
}

void setCount(data &fields, qsizetype count)
{
    const QString number = QLocale(QLocale::English).toString(count);
    fields["count"] = textField(number);
    fields["recipeCount"] =
        textField(count == 1 ? Text::tr("1 recipe") : Text::tr("%1 recipes").arg(number));
}

data commonFields()
{
    data fields;
    fields["stylesheet"] = textField(SiteMap::styleSheet);
    fields["mainMenu"] = textField(SiteMap::mainMenuPage);
    return fields;
}

data linkTo(const RecipeEntry &recipe)
{
    data fields;
    fields["title"] = textField(recipe.title);
    fields["link"] = textField(recipe.page);
    return fields;
}

data listOf(const char *field, const QStringList &texts)
{
    data items = data::type::list;
    for (const QString &text : texts) {
        data item;
        item[field] = textField(text);
        items << item;
    }
    return items;
}

// The base letter under which the index lists a title, or "#" if it begins with no letter.
QString letterOf(const QString &title)
{
    const QString base =
        title.first(1).normalized(QString::NormalizationForm_KD).toUpper().first(1);
    return base.front().isLetter() ? base : u"#"_s;
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
        lines.push_back(
            {letterOf(recipe.title).toStdString(), recipe.title.toStdString(), &recipe});
    std::sort(lines.begin(), lines.end(), [](const IndexLine &a, const IndexLine &b) {
        const int order = compareTexts(a.letter, b.letter);
        return order != 0 ? order < 0 : compareTexts(a.title, b.title) < 0;
    });
    return lines;
}

data letterFields(std::span<const IndexLine> lines, std::size_t number)
{
    data fields;
    fields["letter"] = lines.front().letter;
    fields["anchor"] = "letter-" + std::to_string(number);
    data &recipes = fields["recipes"] = data::type::list;
    for (const IndexLine &line : lines)
        recipes << linkTo(*line.recipe);
    return fields;
}

data letters(const SiteMap &site)
{
    const std::vector<IndexLine> lines = indexLines(site);
    data result = data::type::list;
    for (auto first = lines.begin(); first != lines.end();) {
        const auto last = std::find_if(first, lines.end(), [&](const IndexLine &line) {
            return !textsEqual(line.letter, first->letter);
        });
        result << letterFields({first, last}, result.list_value().size() + 1);
        first = last;
    }
    return result;
}

data typeFields(const TypeEntry &type)
{
    data fields;
    fields["name"] = textField(type.name);
    fields["link"] = textField(type.page);
    setCount(fields, type.recipes);
    return fields;
}

data ingredientsOf(const RecipeDetails &details)
{
    data items = data::type::list;
    for (const IngredientDetails &ingredient : details.ingredients) {
        data item;
        item["name"] = textField(ingredient.name);
        setText(item, "quantity", ingredient.quantity);
        items << item;
    }
    return items;
}

void setLists(data &fields, const RecipeDetails &details)
{
    const auto set = [&fields](const char *name, const char *flag, data &&items) {
        fields[flag] = data(items.is_non_empty_list());
        fields[name] = std::move(items);
    };
    set("description", "hasDescription", listOf("paragraph", details.description));
    set("ingredients", "hasIngredients", ingredientsOf(details));
    set("utensils", "hasUtensils", listOf("name", details.utensils));
    set("instructions", "hasInstructions", listOf("paragraph", details.instructions));
}

} // namespace

const KnownFields &knownFields(PageKind kind)
{
    static const KnownFields mainMenu{{"stylesheet", "mainMenu", "count", "recipeCount",
                                       "hasRecipes", "types", "name", "link", "letters", "letter",
                                       "anchor", "recipes", "title"},
                                      {}};
    static const KnownFields category{
        {"stylesheet", "mainMenu", "name", "link", "count", "recipeCount", "recipes", "title"}, {}};
    static const KnownFields recipe{
        {"stylesheet",  "mainMenu",  "title",       "type",           "typeLink",
         "author",      "servings",  "rating",      "vegetarian",     "hasDescription",
         "description", "paragraph", "ingredients", "hasIngredients", "quantity",
         "name",        "utensils",  "hasUtensils", "instructions",   "hasInstructions",
         "previous",    "next",      "link",        "jsonLd"},
        "jsonLd"};
    switch (kind) {
    case PageKind::MainMenu:
        return mainMenu;
    case PageKind::Category:
        return category;
    case PageKind::Recipe:
        break;
    }
    return recipe;
}

data mainMenuFields(const SiteMap &site)
{
    data fields = commonFields();
    setCount(fields, std::ssize(site.recipes));
    fields["hasRecipes"] = data(!site.recipes.empty());
    data &types = fields["types"] = data::type::list;
    for (const TypeEntry &type : site.types)
        types << typeFields(type);
    fields["letters"] = letters(site);
    return fields;
}

data categoryFields(const SiteMap &site, const TypeEntry &type)
{
    data fields = commonFields();
    fields["name"] = textField(type.name);
    fields["link"] = textField(type.page);
    setCount(fields, type.recipes);
    data &recipes = fields["recipes"] = data::type::list;
    for (const RecipeEntry &recipe : site.recipes) {
        if (recipe.type == type.type)
            recipes << linkTo(recipe);
    }
    return fields;
}

data recipeFields(const SiteMap &site, std::size_t position, const RecipeDetails &details)
{
    const int type = site.recipes[position].type;
    const auto entry = std::find_if(site.types.begin(), site.types.end(),
                                    [type](const TypeEntry &known) { return known.type == type; });
    data fields = commonFields();
    fields["title"] = textField(details.title);
    fields["type"] = textField(entry->name);
    fields["typeLink"] = textField(entry->page);
    setText(fields, "author", details.author);
    setText(fields, "servings", details.servings);
    setText(fields, "rating", details.ratingText);
    fields["vegetarian"] = data(details.vegetarian);
    setLists(fields, details);
    if (position > 0)
        fields["previous"] = linkTo(site.recipes[position - 1]);
    if (position + 1 < site.recipes.size())
        fields["next"] = linkTo(site.recipes[position + 1]);
    fields["jsonLd"] = jsonLd(details);
    return fields;
}
