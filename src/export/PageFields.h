#pragma once

#include "PageTemplate.h"
#include "RecipeFacts.h"
#include "Site.h"
#include "TemplateCheck.h"

// What the templates can show: docs/templates.md says it to those who write one.

const KnownFields &knownFields(PageKind kind);

kainjow::mustache::data mainMenuFields(const Site &site);
kainjow::mustache::data categoryFields(const Site &site, const TypeEntry &type);

// Of the recipe at that position in the site.
kainjow::mustache::data recipeFields(const Site &site, std::size_t position,
                                     const RecipeFacts &facts);
