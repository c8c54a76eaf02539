#include "export/SiteMap.h"

#include "data/TypesAndRatings.h"
#include "export/PageName.h"
#include "export/PageText.h"

#include <algorithm>

namespace {

// In the order of their keys, which stays, so that of two recipes with one title always the same
// one has the bare name.
void namePages(std::vector<RecipeEntry> &recipes)
{
    std::vector<RecipeEntry *> byKey;
    byKey.reserve(recipes.size());
    for (RecipeEntry &recipe : recipes)
        byKey.push_back(&recipe);
    std::sort(byKey.begin(), byKey.end(),
              [](const auto *a, const auto *b) { return a->key < b->key; });
    RecipePageNames names;
    for (RecipeEntry *recipe : byKey) {
        recipe->page = names.take(recipe->title, recipe->key);
        recipe->title = pageTitle(recipe->title);
    }
}

} // namespace

SiteMap siteMapOf(std::vector<RecipeEntry> recipes)
{
    namePages(recipes);
    const QStringList names = recipeTypes();
    std::vector<qsizetype> counts(static_cast<std::size_t>(names.size()));
    for (const RecipeEntry &recipe : recipes)
        ++counts[static_cast<std::size_t>(recipe.type)];

    SiteMap site{std::move(recipes), {}};
    for (int type = 0; type < names.size(); ++type) {
        if (const qsizetype count = counts[static_cast<std::size_t>(type)]; count > 0)
            site.types.push_back({type, names[type], typePageName(names[type]), count});
    }
    return site;
}

QStringList fileNames(const SiteMap &site)
{
    QStringList names{SiteMap::mainMenuPage, SiteMap::styleSheet};
    for (const TypeEntry &type : site.types)
        names += type.page;
    for (const RecipeEntry &recipe : site.recipes)
        names += recipe.page;
    return names;
}
