#pragma once

#include <QString>

#include <optional>
#include <set>
#include <string>
#include <string_view>

// The fields that a template can use.
struct KnownFields {
    std::set<std::string_view> names;
    std::string_view unescaped; // the one that stands between three braces, or none
};

struct TemplateFault {
    int line; // counted from 1
    QString text; // a sentence for the user
};

// What is wrong with a template, if anything. Besides what makes it no template, it refuses what
// would quietly leave holes in pages or let a recipe's text be taken for more than text: unknown
// fields, fields that are not escaped, partials, other delimiters than braces, and a section within
// itself, which could multiply without end.
std::optional<TemplateFault> checkTemplate(const std::string &text, const KnownFields &known);
