#pragma once

#include "export/RecipeReader.h"
#include "export/SiteMap.h"
#include "export/TemplateData.h"

// Returns the values of the fields of the recipe at this position in site.recipes. They refer to
// texts of all arguments, which must outlive them.
TemplateData recipeFields(const SiteMap &site, const TemplateData &common, RecipePosition position,
                          const RecipeDetails &details);
