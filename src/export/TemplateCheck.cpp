#include "export/TemplateCheck.h"

#include <QCoreApplication>

#include <algorithm>
#include <vector>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TemplateCheck)
};

// A tag between braces: {{name}}, {{{name}}}, {{#name}} ... {{/name}}.
struct Tag {
    char kind; // '{' for three braces, 0 for a bare field, else the character in front of the name
    std::string_view name;
    std::size_t start;
};

struct Section {
    std::string_view name;
    std::size_t start;
};

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

QString shown(std::string_view name)
{
    constexpr qsizetype longest = 40;
    const QString text =
        QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).simplified();
    return text.size() > longest ? text.first(longest) + u'…' : text;
}

class Checker
{
public:
    Checker(std::string_view text, const KnownFields &known)
        : m_text(text)
        , m_known(known)
    {
    }

    std::optional<TemplateFault> check()
    {
        constexpr std::string_view open = "{{";
        std::size_t at = m_text.find(open);
        while (at != std::string_view::npos) {
            const std::optional<Tag> tag = readTag(at);
            if (!tag)
                return fault(at, Text::tr("A tag is not closed."));
            if (auto wrong = checkTag(*tag))
                return wrong;
            at = m_text.find(open, m_end);
        }
        if (!m_sections.empty())
            return fault(
                m_sections.back().start,
                Text::tr("The section %1 is not closed.").arg(shown(m_sections.back().name)));
        return {};
    }

private:
    TemplateFault fault(std::size_t at, const QString &text) const
    {
        const auto lines = std::count(m_text.begin(), m_text.begin() + std::ptrdiff_t(at), '\n');
        return {static_cast<int>(lines) + 1, text};
    }

    std::optional<Tag> readTag(std::size_t at)
    {
        const bool isUnescaped = m_text.substr(at).starts_with("{{{");
        const std::string_view close = isUnescaped ? "}}}" : "}}";
        const std::size_t start = at + close.size();
        const std::size_t end = m_text.find(close, start);
        if (end == std::string_view::npos)
            return {};
        m_end = end + close.size();
        const std::string_view contents = trimmed(m_text.substr(start, end - start));
        constexpr std::string_view marks = "#^/>&!=";
        if (isUnescaped)
            return Tag{'{', contents, at};
        if (!contents.empty() && marks.find(contents.front()) != std::string_view::npos)
            return Tag{contents.front(), trimmed(contents.substr(1)), at};
        return Tag{0, contents, at};
    }

    std::optional<TemplateFault> checkTag(const Tag &tag)
    {
        switch (tag.kind) {
        case '!':
            return {};
        case '=':
            return fault(tag.start, Text::tr("Other delimiters than {{ and }} cannot be used."));
        case '>':
            return fault(tag.start, Text::tr("One template cannot take in another."));
        case '/':
            return closeSection(tag);
        default:
            break;
        }
        if (!m_known.names.contains(tag.name))
            return fault(tag.start, Text::tr("There is no field \"%1\".").arg(shown(tag.name)));
        const bool isRaw = tag.kind == '{' || tag.kind == '&';
        if (isRaw != (tag.name == m_known.unescaped))
            return fault(
                tag.start,
                isRaw ? Text::tr("The field %1 stands between two braces.").arg(shown(tag.name))
                      : Text::tr("The field %1 stands between three braces.").arg(shown(tag.name)));
        return tag.kind == '#' || tag.kind == '^' ? openSection(tag) : std::nullopt;
    }

    std::optional<TemplateFault> openSection(const Tag &tag)
    {
        const bool isInItself =
            std::any_of(m_sections.begin(), m_sections.end(),
                        [&](const Section &section) { return section.name == tag.name; });
        if (isInItself)
            return fault(tag.start,
                         Text::tr("The section %1 lies within itself.").arg(shown(tag.name)));
        m_sections.push_back({tag.name, tag.start});
        return {};
    }

    std::optional<TemplateFault> closeSection(const Tag &tag)
    {
        if (m_sections.empty() || m_sections.back().name != tag.name)
            return fault(tag.start,
                         Text::tr("Here ends a section %1 that has not begun, or one within it "
                                  "has not ended.")
                             .arg(shown(tag.name)));
        m_sections.pop_back();
        return {};
    }

    const std::string_view m_text;
    const KnownFields &m_known;
    std::size_t m_end = 0; // of the tag read last
    std::vector<Section> m_sections;
};

} // namespace

std::optional<TemplateFault> checkTemplate(const std::string &text, const KnownFields &known)
{
    return Checker(text, known).check();
}
