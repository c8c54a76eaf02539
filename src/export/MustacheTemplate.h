#pragma once

#include "export/TemplateData.h"
#include "export/TemplateFields.h"

#include <QByteArrayView>
#include <QString>

#include <variant>

struct TemplateError {
    int line; // counted from 1
    QString text; // a sentence for the user
};

// A template in the Mustache language. Of this language it has fields, sections, inverted sections
// and comments. Whatever could leave gaps in the pages without notice, or let the text of a recipe
// become HTML, is an error: fields that a page does not have in that place, a list as a text,
// unescaped fields, partials and other delimiters. So is a section inside itself, with which a page
// could grow exponentially.
class MustacheTemplate
{
public:
    // Returns the template, or its first error. The fields must outlive the template.
    static std::variant<MustacheTemplate, TemplateError> parse(QByteArrayView text,
                                                               const TemplateFields &fields);

    // Whether the template has a tag for a field of this name.
    bool uses(std::string_view field) const;

    // Appends the page to the text. Every field is escaped except for JSON.
    void render(const TemplateData &page, std::string &text) const;

private:
    friend class MustacheParser;
    friend class MustacheRenderer;

    enum class Op { Text, Field, Json, Section, InvertedSection };

    // A part of the template. The parts within a section follow its own.
    struct Part {
        Op op;
        std::string text; // HTML, or the name of a field
        std::size_t level = 0; // of the field: 0 is the page, 1 an entry of a list on it
        std::size_t end = 0; // number of the first part after the section
    };

    std::vector<Part> m_parts;
};
