#pragma once

#include "export/RecipeReader.h"
#include "export/SiteMap.h"
#include "export/TemplateData.h"

// The values of the fields in TemplateFields.h. The site map must be valid as long as they are.

// Those of every page.
TemplateData commonFields(const SiteMap &site);

TemplateData mainMenuFields(const SiteMap &site);
TemplateData categoryFields(const SiteMap &site, const ListEntry &type);

// The position is that of the recipe in site.recipes.
TemplateData recipeFields(const SiteMap &site, std::size_t position, const RecipeDetails &details);
