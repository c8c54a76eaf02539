#pragma once

#include <QString>

#include <kainjow/mustache.hpp>

enum class PageKind { MainMenu, Category, Recipe };

// A template, read and checked once and then filled in for page after page.
class PageTemplate
{
public:
    // The template in the file, or the generic one where the path is empty. Throws ExportError
    // where there is no such file or it cannot be used; the text names the file and what is wrong.
    static PageTemplate load(PageKind kind, const QString &path);

    // The page, UTF-8. Good until the next one is made. Every field but the one for programs is
    // escaped.
    const std::string &fillIn(const kainjow::mustache::data &fields);

private:
    explicit PageTemplate(const std::string &text);

    kainjow::mustache::mustache m_template;
    std::string m_page;
};
