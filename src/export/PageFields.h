#pragma once

#include "data/settings/Settings.h"
#include "export/SiteMap.h"
#include "export/TemplateData.h"

#include <QDate>

// The values of the fields in TemplateFields.h. They refer to the texts of the site map and of the
// common fields, which must outlive them.

// Those that are the same on all pages.
TemplateData commonFields(const SiteMap &site, PageStyle style, QDate exportedOn);

// Those of a link to a recipe.
TemplateData recipeLink(const RecipeEntry &recipe);

TemplateData mainMenuFields(const SiteMap &site, const TemplateData &common);
TemplateData categoryFields(const SiteMap &site, const TemplateData &common, const ListEntry &type);
