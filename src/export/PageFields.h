#pragma once

#include "export/PageTemplate.h"
#include "export/RecipeReader.h"
#include "export/SiteMap.h"

// The fields that templates can show. docs/templates.md describes them for authors of templates.

// Every name that the fields of this kind of page can have, at any level.
const KnownFields &knownFields(PageKind kind);

kainjow::mustache::data mainMenuFields(const SiteMap &site);
kainjow::mustache::data categoryFields(const SiteMap &site, const TypeEntry &type);

// The position is that of the recipe in site.recipes.
kainjow::mustache::data recipeFields(const SiteMap &site, std::size_t position,
                                     const RecipeDetails &details);
