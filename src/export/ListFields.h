#pragma once

#include "export/DividedList.h"
#include "export/TemplateData.h"

// The values of the fields of the main menu and of lists. They refer to the texts of the lists and
// of the common fields, which must outlive them.

// The list is allRecipes(). If it is divided, the main menu leads to its parts.
TemplateData mainMenuFields(const SiteMap &site, const TemplateData &common, const SiteList &list,
                            const DividedList &divided);

// Those of the first page of a list, which has all of its lines if the list is not divided.
TemplateData categoryFields(const TemplateData &common, const SiteList &list,
                            const DividedList &divided);

// Those of the part with this number.
TemplateData partFields(const TemplateData &common, const SiteList &list,
                        const DividedList &divided, std::size_t number);
