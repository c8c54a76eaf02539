#pragma once

#include "data/settings/Settings.h"
#include "export/SiteMap.h"
#include "export/TemplateData.h"

#include <QDate>

// Returns the values of the fields that are the same on all pages. They refer to texts of the site
// map, which must outlive them.
TemplateData commonFields(const SiteMap &site, PageStyle style, QDate exportedOn);

// Returns the values of the fields of a link to the recipe, which must outlive them.
TemplateData recipeLink(const RecipeEntry &recipe);
