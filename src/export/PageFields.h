#pragma once

#include "data/settings/Settings.h"
#include "export/RecipeReader.h"
#include "export/SiteMap.h"
#include "export/TemplateData.h"

#include <QDate>

// The values of the fields in TemplateFields.h. They refer to the texts of the site map, of the
// common fields and of the details, which must outlive them.

// Those that are the same on all pages.
TemplateData commonFields(const SiteMap &site, PageStyle style, QDate exportedOn);

// The position is that of the recipe in site.recipes.
TemplateData recipeFields(const SiteMap &site, const TemplateData &common, std::size_t position,
                          const RecipeDetails &details);
