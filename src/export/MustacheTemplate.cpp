#include "export/MustacheTemplate.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

// What replaces each character; null for those that stay as they are.
constexpr auto entities = [] {
    std::array<const char *, std::numeric_limits<unsigned char>::max() + 1> table{};
    table['&'] = "&amp;";
    table['<'] = "&lt;";
    table['>'] = "&gt;";
    table['"'] = "&quot;";
    table['\''] = "&apos;";
    return table;
}();

const char *entityOf(char character)
{
    return entities[static_cast<unsigned char>(character)];
}

void appendEscaped(std::string &html, std::string_view text)
{
    for (const char *begin = text.data(), *const end = begin + text.size();;) {
        const char *const special = std::find_if(begin, end, entityOf);
        html.append(begin, special);
        if (special == end)
            return;
        html.append(entityOf(*special));
        begin = special + 1;
    }
}

std::string_view textOf(const TemplateData::Value &value)
{
    if (const auto *text = std::get_if<std::string>(&value))
        return *text;
    const auto *view = std::get_if<std::string_view>(&value);
    return view == nullptr ? std::string_view() : *view;
}

// Whether a section of the field is shown.
bool isSet(const TemplateData::Value &value)
{
    if (const auto *flag = std::get_if<bool>(&value))
        return *flag;
    if (const auto *entries = std::get_if<TemplateData::List>(&value))
        return !entries->empty();
    return !textOf(value).empty();
}

} // namespace

class MustacheRenderer
{
public:
    MustacheRenderer(const MustacheTemplate &source, const TemplateData &page, std::string &text)
        : m_parts(source.m_parts)
        , m_levels{&page}
        , m_text(text)
    {
        render(0, m_parts.size());
    }

private:
    using Op = MustacheTemplate::Op;

    void render(std::size_t begin, std::size_t end)
    {
        for (std::size_t i = begin; i < end; ++i) {
            const MustacheTemplate::Part &part = m_parts[i];
            if (part.op == Op::Text) {
                m_text += part.text;
                continue;
            }
            const TemplateData::Value *value = m_levels[part.level]->find(part.text);
            if (part.op == Op::Section || part.op == Op::InvertedSection) {
                if ((value != nullptr && isSet(*value)) == (part.op == Op::Section))
                    renderSection(i, value);
                i = part.end - 1;
            } else if (value != nullptr && part.op == Op::Json) {
                m_text += textOf(*value);
            } else if (value != nullptr) {
                appendEscaped(m_text, textOf(*value));
            }
        }
    }

    void renderSection(std::size_t number, const TemplateData::Value *value)
    {
        const MustacheTemplate::Part &section = m_parts[number];
        const auto *entries = std::get_if<TemplateData::List>(value);
        if (section.op == Op::InvertedSection || entries == nullptr) {
            render(number + 1, section.end);
            return;
        }
        for (const TemplateData &entry : *entries) {
            m_levels.push_back(&entry);
            render(number + 1, section.end);
            m_levels.pop_back();
        }
    }

    const std::vector<MustacheTemplate::Part> &m_parts;
    std::vector<const TemplateData *> m_levels; // the page first
    std::string &m_text;
};

bool MustacheTemplate::uses(std::string_view field) const
{
    return std::any_of(m_parts.begin(), m_parts.end(), [field](const Part &part) {
        return part.op != Op::Text && part.text == field;
    });
}

void MustacheTemplate::render(const TemplateData &page, std::string &text) const
{
    MustacheRenderer(*this, page, text);
}
