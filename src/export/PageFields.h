#pragma once

#include "export/PageTemplate.h"
#include "export/RecipeDetails.h"
#include "export/SiteMap.h"
#include "export/TemplateCheck.h"

// What the templates can show: docs/templates.md says it to those who write one.

const KnownFields &knownFields(PageKind kind);

kainjow::mustache::data mainMenuFields(const SiteMap &site);
kainjow::mustache::data categoryFields(const SiteMap &site, const TypeEntry &type);

// Of the recipe at that position in the site.
kainjow::mustache::data recipeFields(const SiteMap &site, std::size_t position,
                                     const RecipeDetails &details);
