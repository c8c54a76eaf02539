#pragma once

#include <QByteArrayView>
#include <QString>

#include <kainjow/mustache.hpp>

#include <optional>
#include <set>

enum class PageKind { MainMenu, Category, Recipe };

// The fields that a template can use.
struct KnownFields {
    std::set<QByteArrayView> names;
    QByteArrayView unescaped; // the one that is written between three braces, or empty
};

struct TemplateError {
    int line; // counted from 1
    QString text; // a sentence for the user
};

// Returns the first error in a template, if there is one. Besides what the template engine rejects,
// these are errors because they would leave gaps in the pages without notice, or let the text of a
// recipe become HTML: unknown fields, unescaped fields, partials, and delimiters other than braces.
// So is a section inside itself, with which a page could grow exponentially.
std::optional<TemplateError> checkTemplate(QByteArrayView text, const KnownFields &known);

// A template, which is read and checked once and then filled in for each page.
class PageTemplate
{
public:
    // Loads the template from the file, or the generic one if the path is empty. Throws ExportError
    // if the file cannot be used; the text names the file and the reason.
    static PageTemplate load(PageKind kind, const QString &path);

    // Returns the page in UTF-8. The reference is valid until the next call. Every field is escaped
    // except KnownFields::unescaped.
    const std::string &fillIn(const kainjow::mustache::data &fields);

private:
    explicit PageTemplate(const std::string &text);

    kainjow::mustache::mustache m_template;
    std::string m_page;
};
