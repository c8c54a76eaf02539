#pragma once

#include <string_view>
#include <vector>

enum class PageKind { MainMenu, Category, Recipe };

// A field that templates can use.
struct TemplateField {
    enum class Kind {
        Text, // a tag shows it, and a section asks whether the page has it
        YesNo, // for a section
        List, // for a section, which is repeated for each entry and can use the fields of the entry
        Page, // for a section with the fields of another page, if there is one
        Json, // written between three braces, not escaped
    };
    std::string_view name;
    Kind kind = Kind::Text;
    std::vector<TemplateField> fields = {}; // of an entry of the list, or of the other page
};

using TemplateFields = std::vector<TemplateField>;

// All fields of a kind of page. They are a tree, since lists have fields as well. Templates are
// checked against it, and docs/templates.md describes it.
const TemplateFields &templateFields(PageKind kind);
