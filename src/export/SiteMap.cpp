#include "export/SiteMap.h"

#include "export/PageNames.h"
#include "export/PageText.h"
#include "export/TitleLetters.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SiteMap)
};

// In the order of their keys, which never changes, so that of two recipes with the same title
// always the same one has its key in the name.
void namePages(std::vector<RecipeEntry> &recipes, PageNames &names)
{
    std::vector<RecipeEntry *> byKey;
    byKey.reserve(recipes.size());
    for (RecipeEntry &recipe : recipes)
        byKey.push_back(&recipe);
    std::sort(byKey.begin(), byKey.end(),
              [](const auto *a, const auto *b) { return a->key < b->key; });
    for (RecipeEntry *recipe : byKey) {
        const QString title = QString::fromStdString(recipe->title);
        recipe->page = names.takeRecipe(title, recipe->key).toStdString();
        const QString shown = pageTitle(title);
        recipe->title = shown.toStdString();
        recipe->letter = titleLetter(shown);
    }
}

void namePages(std::vector<ListEntry> &entries, QLatin1StringView prefix, const QString &unnamed,
               PageNames &names)
{
    for (ListEntry &entry : entries) {
        const QString name = pageLine(QString::fromStdString(entry.name));
        entry.page = names.take(prefix, name, entry.key).toStdString();
        const QString shown = name.isEmpty() ? unnamed : name;
        entry.name = shown.toStdString();
        entry.letter = titleLetter(shown);
    }
}

std::vector<RecipePosition> sortedByTitle(const std::vector<RecipeEntry> &recipes)
{
    std::vector<LetteredText> titles;
    titles.reserve(recipes.size());
    for (const RecipeEntry &recipe : recipes)
        titles.push_back({recipe.title, recipe.letter});
    return sortedOrder(titles);
}

// Brings the recipes of each entry into the order of their titles. An ingredient that a recipe uses
// twice is in its list twice before.
void sortRecipes(std::vector<ListEntry> &entries, const std::vector<RecipePosition> &byTitle)
{
    std::vector<RecipePosition> rank(byTitle.size());
    for (RecipePosition i = 0; i < byTitle.size(); ++i)
        rank[byTitle[i]] = i;
    for (ListEntry &entry : entries) {
        std::vector<RecipePosition> &recipes = entry.recipes;
        std::sort(recipes.begin(), recipes.end(),
                  [&](RecipePosition a, RecipePosition b) { return rank[a] < rank[b]; });
        recipes.erase(std::unique(recipes.begin(), recipes.end()), recipes.end());
        recipes.shrink_to_fit();
    }
}

std::vector<ListEntry> typesOf(const SiteMap &site, PageNames &names)
{
    const QStringList types = pageTypes();
    std::vector<ListEntry> entries(static_cast<std::size_t>(types.size()));
    for (const RecipePosition position : site.byTitle)
        entries[static_cast<std::size_t>(site.recipes[position].type)].recipes.push_back(position);
    for (qsizetype type = 0; type < types.size(); ++type) {
        ListEntry &entry = entries[static_cast<std::size_t>(type)];
        entry.key = type;
        entry.name = types[type].toStdString();
    }
    std::erase_if(entries, [](const ListEntry &entry) { return entry.recipes.empty(); });
    // The names are plain: a slash between two words needs no hash.
    for (ListEntry &entry : entries)
        entry.page =
            names.take("type"_L1, QString::fromStdString(entry.name).replace(u'/', u' '), entry.key)
                .toStdString();
    return entries;
}

const ListEntry *findKey(const std::vector<ListEntry> &entries, qint64 key)
{
    const auto found =
        std::lower_bound(entries.begin(), entries.end(), key,
                         [](const ListEntry &entry, qint64 wanted) { return entry.key < wanted; });
    return found == entries.end() || found->key != key ? nullptr : &*found;
}

} // namespace

const ListEntry &SiteMap::type(const RecipeEntry &recipe) const
{
    return *findKey(types, recipe.type);
}

const ListEntry *SiteMap::ingredient(qint64 key) const
{
    return findKey(ingredients, key);
}

const ListEntry *SiteMap::utensil(qint64 key) const
{
    return findKey(utensils, key);
}

SiteMap siteMapOf(SiteContents contents)
{
    SiteMap site;
    site.recipes = std::move(contents.recipes);
    site.ingredients = std::move(contents.ingredients);
    site.utensils = std::move(contents.utensils);
    PageNames names;
    namePages(site.recipes, names);
    namePages(site.ingredients, "ingredient"_L1, Text::tr("Unnamed ingredient"), names);
    namePages(site.utensils, "utensil"_L1, Text::tr("Unnamed utensil"), names);
    site.byTitle = sortedByTitle(site.recipes);
    for (const RecipePosition position : site.byTitle) {
        if (site.recipes[position].vegetarian)
            site.vegetarian.push_back(position);
    }
    site.types = typesOf(site, names);
    sortRecipes(site.ingredients, site.byTitle);
    sortRecipes(site.utensils, site.byTitle);
    return site;
}
