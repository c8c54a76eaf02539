#include "export/SiteLists.h"

#include "data/TypesAndRatings.h"
#include "export/PageNames.h"
#include "export/TitleLetters.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SiteLists)
};

ListLine lineOf(const RecipeEntry &recipe)
{
    return {recipe.title, recipe.page, recipe.letter, recipe.type, &recipe, 0};
}

std::vector<ListLine> linesOf(const SiteMap &site, const std::vector<RecipePosition> &recipes)
{
    std::vector<ListLine> lines;
    lines.reserve(recipes.size());
    for (const RecipePosition position : recipes)
        lines.push_back(lineOf(site.recipes[position]));
    return lines;
}

std::vector<ListLine> linesOf(const std::vector<ListEntry> &entries)
{
    std::vector<LetteredText> names;
    names.reserve(entries.size());
    for (const ListEntry &entry : entries)
        names.push_back({entry.name, entry.letter});
    std::vector<ListLine> lines;
    lines.reserve(entries.size());
    for (const std::uint32_t number : sortedOrder(names)) {
        const ListEntry &entry = entries[number];
        lines.push_back(
            {entry.name, entry.page, entry.letter, entry.type, nullptr, entry.recipes.size()});
    }
    return lines;
}

ListLink ingredientsLink(const SiteMap &site)
{
    return {Text::tr("Ingredients").toStdString(), std::string(SiteMap::ingredientsPage),
            ListKind::Ingredients, site.ingredients.size()};
}

ListLink utensilsLink(const SiteMap &site)
{
    return {Text::tr("Utensils").toStdString(), std::string(SiteMap::utensilsPage),
            ListKind::Utensils, site.utensils.size()};
}

ListLink vegetarianLink(const SiteMap &site)
{
    return {Text::tr("Vegetarian recipes").toStdString(), std::string(SiteMap::vegetarianPage),
            ListKind::Recipes, site.vegetarian.size()};
}

SiteList listOf(ListLink link, std::vector<ListLine> lines)
{
    return {.kind = link.kind,
            .name = std::move(link.name),
            .page = std::move(link.page),
            .lines = std::move(lines)};
}

// The lists of the types of ingredients, without their trails.
std::vector<SiteList> ingredientsByType(const SiteList &all)
{
    std::vector<SiteList> lists;
    const QStringList types = ingredientTypes();
    PageNames names;
    for (int type = 0; type < types.size(); ++type) {
        SiteList list{.kind = ListKind::Ingredients,
                      .name = types[type].toStdString(),
                      .page = names.take("ingredients"_L1, types[type], type).toStdString()};
        std::copy_if(all.lines.begin(), all.lines.end(), std::back_inserter(list.lines),
                     [type](const ListLine &line) { return line.type == type; });
        if (!list.lines.empty())
            lists.push_back(std::move(list));
    }
    return lists;
}

ListLink linkTo(const SiteList &list)
{
    return {list.name, list.page, list.kind, list.lines.size()};
}

bool useEntries(const SiteMap &site, const std::vector<ListEntry> &entries,
                const std::vector<ListLink> &trail,
                const std::function<bool(const SiteList &)> &use)
{
    return std::all_of(entries.begin(), entries.end(), [&](const ListEntry &entry) {
        return use({.name = entry.name,
                    .page = entry.page,
                    .trail = trail,
                    .lines = linesOf(site, entry.recipes)});
    });
}

bool useIngredients(const SiteMap &site, const std::function<bool(const SiteList &)> &use)
{
    const ListLink link = ingredientsLink(site);
    SiteList all = listOf(link, linesOf(site.ingredients));
    std::vector<SiteList> types = ingredientsByType(all);
    for (SiteList &type : types) {
        all.types.push_back(linkTo(type));
        type.trail = {link};
        if (!use(type))
            return false;
    }
    return use(all) && useEntries(site, site.ingredients, {link}, use);
}

bool useUtensils(const SiteMap &site, const std::function<bool(const SiteList &)> &use)
{
    const ListLink link = utensilsLink(site);
    return use(listOf(link, linesOf(site.utensils)))
        && useEntries(site, site.utensils, {link}, use);
}

} // namespace

std::string countText(ListKind kind, std::size_t count)
{
    const QString number = QLocale(QLocale::English).toString(static_cast<qulonglong>(count));
    QString text;
    switch (kind) {
    case ListKind::Recipes:
        text = count == 1 ? Text::tr("1 recipe") : Text::tr("%1 recipes");
        break;
    case ListKind::Ingredients:
        text = count == 1 ? Text::tr("1 ingredient") : Text::tr("%1 ingredients");
        break;
    case ListKind::Utensils:
        text = count == 1 ? Text::tr("1 utensil") : Text::tr("%1 utensils");
        break;
    }
    return text.replace("%1"_L1, number).toStdString();
}

SiteList allRecipes(const SiteMap &site)
{
    return {.name = Text::tr("All recipes").toStdString(),
            .page = std::string(SiteMap::mainMenuPage),
            .lines = linesOf(site, site.byTitle)};
}

bool forEachList(const SiteMap &site, const std::function<bool(const SiteList &)> &use)
{
    return useEntries(site, site.types, {}, use)
        && (site.vegetarian.empty()
            || use(listOf(vegetarianLink(site), linesOf(site, site.vegetarian))))
        && (site.ingredients.empty() || useIngredients(site, use))
        && (site.utensils.empty() || useUtensils(site, use));
}

std::vector<ListLink> menuLists(const SiteMap &site)
{
    std::vector<ListLink> lists{ingredientsLink(site), vegetarianLink(site), utensilsLink(site)};
    std::erase_if(lists, [](const ListLink &link) { return link.lines == 0; });
    return lists;
}
