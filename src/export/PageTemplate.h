#pragma once

#include "export/MustacheTemplate.h"

// The template of a kind of page, which is read and checked once and then filled in for each page.
class PageTemplate
{
public:
    // Loads the template from the file, or the generic one if the path is empty. Throws ExportError
    // if the file cannot be used; the text names the file and the reason.
    static PageTemplate load(PageKind kind, const QString &path);

    // Whether the template has a tag for a field of this name.
    bool uses(std::string_view field) const;

    // Returns the page in UTF-8. The reference is valid until the next call.
    const std::string &fillIn(const TemplateData &fields);

private:
    explicit PageTemplate(MustacheTemplate contents);

    MustacheTemplate m_template;
    std::string m_page;
};
