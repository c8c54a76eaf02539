#include "export/MustacheTemplate.h"

#include <QCoreApplication>

#include <algorithm>
#include <optional>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(MustacheParser)
};

using Kind = TemplateField::Kind;

// A tag between braces: {{name}}, {{{name}}}, {{#name}} ... {{/name}}.
struct Tag {
    char kind; // '{' for three braces, 0 for a field, else the character before the name
    QByteArrayView name;
    qsizetype start;
    qsizetype end;
};

QString shown(QByteArrayView name)
{
    constexpr qsizetype longest = 40;
    const QString text = QString::fromUtf8(name).simplified();
    return text.size() > longest ? text.first(longest) + u'…' : text;
}

const TemplateField *find(const TemplateFields &fields, QByteArrayView name)
{
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const TemplateField &field) { return field.name == name; });
    return found == fields.end() ? nullptr : &*found;
}

bool hasEntries(const TemplateField &field)
{
    return field.kind == Kind::List || field.kind == Kind::Page;
}

// Adds the names of the lists, at any level, whose entries have a field of this name.
void collectLists(const TemplateFields &fields, QByteArrayView name, QStringList &lists)
{
    for (const TemplateField &field : fields) {
        if (find(field.fields, name) != nullptr)
            lists += QString::fromUtf8(QByteArrayView(field.name));
        collectLists(field.fields, name, lists);
    }
}

bool isBlank(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char character) { return character == ' ' || character == '\t'; });
}

} // namespace

class MustacheParser
{
public:
    MustacheParser(QByteArrayView text, const TemplateFields &fields)
        : m_text(text)
        , m_levels{&fields}
    {
    }

    std::variant<MustacheTemplate, TemplateError> parse()
    {
        constexpr QByteArrayView open = "{{";
        for (qsizetype at = m_text.indexOf(open); at >= 0; at = m_text.indexOf(open, m_done)) {
            const std::optional<Tag> tag = readTag(at);
            if (!tag)
                return error(at, Text::tr("A tag is not closed."));
            addTextBefore(*tag);
            if (auto wrong = addTag(*tag))
                return *std::move(wrong);
        }
        if (!m_sections.empty())
            return error(
                m_sections.back().tag.start,
                Text::tr("The section %1 is not closed.").arg(shown(m_sections.back().tag.name)));
        addText(m_text.size());
        return std::move(m_template);
    }

private:
    using Op = MustacheTemplate::Op;

    struct Section {
        Tag tag;
        std::size_t part; // its number
        bool hasLevel; // whether the fields of entries can be used in it
    };

    struct Place {
        const TemplateField *field;
        std::size_t level;
    };

    TemplateError error(qsizetype at, const QString &text) const
    {
        return {static_cast<int>(m_text.first(at).count('\n')) + 1, text};
    }

    std::optional<Tag> readTag(qsizetype at) const
    {
        const bool isUnescaped = m_text.sliced(at).startsWith("{{{");
        const QByteArrayView close = isUnescaped ? "}}}" : "}}";
        const qsizetype start = at + close.size();
        const qsizetype end = m_text.indexOf(close, start);
        if (end < 0)
            return {};
        const QByteArrayView contents = m_text.sliced(start, end - start).trimmed();
        constexpr QByteArrayView marks = "#^/>&!=";
        if (isUnescaped)
            return Tag{'{', contents, at, end + close.size()};
        if (!contents.isEmpty() && marks.contains(contents.front()))
            return Tag{contents.front(), contents.sliced(1).trimmed(), at, end + close.size()};
        return Tag{0, contents, at, end + close.size()};
    }

    void addText(qsizetype end)
    {
        if (end > m_done)
            m_template.m_parts.push_back(
                {Op::Text, m_text.sliced(m_done, end - m_done).toByteArray().toStdString()});
        m_done = end;
    }

    // A line with nothing but the tag of a section or a comment leaves no empty line on the page.
    void addTextBefore(const Tag &tag)
    {
        constexpr QByteArrayView standalone = "#^/!";
        const qsizetype lineStart = m_text.first(tag.start).lastIndexOf('\n') + 1;
        const qsizetype found = m_text.indexOf('\n', tag.end);
        const qsizetype lineEnd = found < 0 ? m_text.size() : found;
        QByteArrayView after = m_text.sliced(tag.end, lineEnd - tag.end);
        if (after.endsWith('\r'))
            after.chop(1);
        const bool isAlone = tag.kind != 0 && standalone.contains(tag.kind) && lineStart >= m_done
            && isBlank(m_text.sliced(lineStart, tag.start - lineStart)) && isBlank(after);
        addText(isAlone ? lineStart : tag.start);
        m_done = isAlone ? std::min(lineEnd + 1, m_text.size()) : tag.end;
    }

    std::optional<TemplateError> addTag(const Tag &tag)
    {
        switch (tag.kind) {
        case '!':
            return {};
        case '=':
            return error(tag.start, Text::tr("Delimiters other than {{ and }} cannot be used."));
        case '>':
            return error(tag.start, Text::tr("A template cannot include another one."));
        case '/':
            return closeSection(tag);
        default:
            break;
        }
        const Place place = find(tag.name);
        if (place.field == nullptr)
            return error(tag.start, unknownText(tag.name));
        if (const QString reason = misuse(tag, place.field->kind); !reason.isEmpty())
            return error(tag.start, reason.arg(shown(tag.name)));
        if (tag.kind == '#' || tag.kind == '^')
            return openSection(tag, place);
        addPart(place.field->kind == Kind::Json ? Op::Json : Op::Field, place);
        return {};
    }

    void addPart(Op op, const Place &place)
    {
        m_template.m_parts.push_back({op, std::string(place.field->name), place.level});
    }

    // Entries of lists hide fields of the same name outside the list.
    Place find(QByteArrayView name) const
    {
        for (std::size_t level = m_levels.size(); level-- > 0;) {
            if (const TemplateField *field = ::find(*m_levels[level], name))
                return {field, level};
        }
        return {nullptr, 0};
    }

    QString unknownText(QByteArrayView name) const
    {
        QStringList lists;
        collectLists(*m_levels.front(), name, lists);
        lists.removeDuplicates();
        if (lists.isEmpty())
            return Text::tr("There is no field \"%1\".").arg(shown(name));
        return Text::tr("There is no field \"%1\" here, but within these sections: %2.")
            .arg(shown(name), lists.join(u", "));
    }

    // Returns why a field of this kind cannot be used in this tag, or an empty text if it can.
    static QString misuse(const Tag &tag, Kind kind)
    {
        const bool isSection = tag.kind == '#' || tag.kind == '^';
        const bool isRaw = tag.kind == '{' || tag.kind == '&';
        if (isSection || (kind == Kind::Json && isRaw) || (kind == Kind::Text && !isRaw))
            return {};
        if (kind == Kind::Json)
            return Text::tr("Write the field %1 between three braces.");
        if (kind == Kind::Text)
            return Text::tr("Write the field %1 between two braces.");
        if (kind == Kind::YesNo)
            return Text::tr("The field %1 is yes or no. Use it as a section: {{#%1}}text{{/%1}}.");
        return Text::tr("The field %1 is not a text. Use it as a section: "
                        "{{#%1}}fields{{/%1}}.");
    }

    std::optional<TemplateError> openSection(const Tag &tag, const Place &place)
    {
        const bool isInItself =
            std::any_of(m_sections.begin(), m_sections.end(),
                        [&](const Section &section) { return section.tag.name == tag.name; });
        if (isInItself)
            return error(tag.start,
                         Text::tr("The section %1 is inside itself.").arg(shown(tag.name)));
        const bool hasLevel = tag.kind == '#' && hasEntries(*place.field);
        m_sections.push_back({tag, m_template.m_parts.size(), hasLevel});
        addPart(tag.kind == '#' ? Op::Section : Op::InvertedSection, place);
        if (hasLevel)
            m_levels.push_back(&place.field->fields);
        return {};
    }

    std::optional<TemplateError> closeSection(const Tag &tag)
    {
        if (m_sections.empty() || m_sections.back().tag.name != tag.name)
            return error(tag.start,
                         Text::tr("The section %1 ends here, but it has not begun, or a section "
                                  "inside it has not ended.")
                             .arg(shown(tag.name)));
        if (m_sections.back().hasLevel)
            m_levels.pop_back();
        m_template.m_parts[m_sections.back().part].end = m_template.m_parts.size();
        m_sections.pop_back();
        return {};
    }

    const QByteArrayView m_text;
    qsizetype m_done = 0; // end of the text that is in the template
    MustacheTemplate m_template;
    std::vector<const TemplateFields *> m_levels; // known here: those of the page come first
    std::vector<Section> m_sections; // that are open
};

std::variant<MustacheTemplate, TemplateError> MustacheTemplate::parse(QByteArrayView text,
                                                                      const TemplateFields &fields)
{
    return MustacheParser(text, fields).parse();
}
