#include "export/PageTemplate.h"

#include "export/ExportError.h"
#include "export/PageFields.h"
#include "platform/Paths.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PageTemplate)
};

// A tag between braces: {{name}}, {{{name}}}, {{#name}} ... {{/name}}.
struct Tag {
    char kind; // '{' for three braces, 0 for a field, else the character before the name
    QByteArrayView name;
    qsizetype start;
};

struct Section {
    QByteArrayView name;
    qsizetype start;
};

QString shown(QByteArrayView name)
{
    constexpr qsizetype longest = 40;
    const QString text = QString::fromUtf8(name).simplified();
    return text.size() > longest ? text.first(longest) + u'…' : text;
}

class Checker
{
public:
    Checker(QByteArrayView text, const KnownFields &known)
        : m_text(text)
        , m_known(known)
    {
    }

    std::optional<TemplateError> check()
    {
        constexpr QByteArrayView open = "{{";
        qsizetype at = m_text.indexOf(open);
        while (at >= 0) {
            const std::optional<Tag> tag = readTag(at);
            if (!tag)
                return error(at, Text::tr("A tag is not closed."));
            if (auto wrong = checkTag(*tag))
                return wrong;
            at = m_text.indexOf(open, m_end);
        }
        if (!m_sections.empty())
            return error(
                m_sections.back().start,
                Text::tr("The section %1 is not closed.").arg(shown(m_sections.back().name)));
        return {};
    }

private:
    TemplateError error(qsizetype at, const QString &text) const
    {
        return {static_cast<int>(m_text.first(at).count('\n')) + 1, text};
    }

    std::optional<Tag> readTag(qsizetype at)
    {
        const bool isUnescaped = m_text.sliced(at).startsWith("{{{");
        const QByteArrayView close = isUnescaped ? "}}}" : "}}";
        const qsizetype start = at + close.size();
        const qsizetype end = m_text.indexOf(close, start);
        if (end < 0)
            return {};
        m_end = end + close.size();
        const QByteArrayView contents = m_text.sliced(start, end - start).trimmed();
        constexpr QByteArrayView marks = "#^/>&!=";
        if (isUnescaped)
            return Tag{'{', contents, at};
        if (!contents.isEmpty() && marks.contains(contents.front()))
            return Tag{contents.front(), contents.sliced(1).trimmed(), at};
        return Tag{0, contents, at};
    }

    std::optional<TemplateError> checkTag(const Tag &tag)
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
        if (!m_known.names.contains(tag.name))
            return error(tag.start, Text::tr("There is no field \"%1\".").arg(shown(tag.name)));
        const bool isRaw = tag.kind == '{' || tag.kind == '&';
        if (isRaw != (tag.name == m_known.unescaped))
            return error(
                tag.start,
                isRaw ? Text::tr("Write the field %1 between two braces.").arg(shown(tag.name))
                      : Text::tr("Write the field %1 between three braces.").arg(shown(tag.name)));
        return tag.kind == '#' || tag.kind == '^' ? openSection(tag) : std::nullopt;
    }

    std::optional<TemplateError> openSection(const Tag &tag)
    {
        const bool isInItself =
            std::any_of(m_sections.begin(), m_sections.end(),
                        [&](const Section &section) { return section.name == tag.name; });
        if (isInItself)
            return error(tag.start,
                         Text::tr("The section %1 is inside itself.").arg(shown(tag.name)));
        m_sections.push_back({tag.name, tag.start});
        return {};
    }

    std::optional<TemplateError> closeSection(const Tag &tag)
    {
        if (m_sections.empty() || m_sections.back().name != tag.name)
            return error(tag.start,
                         Text::tr("The section %1 ends here, but it has not begun, or a section "
                                  "inside it has not ended.")
                             .arg(shown(tag.name)));
        m_sections.pop_back();
        return {};
    }

    const QByteArrayView m_text;
    const KnownFields &m_known;
    qsizetype m_end = 0; // of the last tag read
    std::vector<Section> m_sections;
};

constexpr qsizetype largestTemplate = 1 << 20;

QString genericPath(PageKind kind)
{
    switch (kind) {
    case PageKind::MainMenu:
        return u":/pages/templates/mainmenu.html"_s;
    case PageKind::Category:
        return u":/pages/templates/category.html"_s;
    case PageKind::Recipe:
        break;
    }
    return u":/pages/templates/recipe.html"_s;
}

QString nameOf(PageKind kind)
{
    switch (kind) {
    case PageKind::MainMenu:
        return Text::tr("main menu template");
    case PageKind::Category:
        return Text::tr("recipe categories template");
    case PageKind::Recipe:
        break;
    }
    return Text::tr("recipe template");
}

QString reasonOf(const platform::FileReadError &error)
{
    switch (error.failure) {
    case platform::ReadFailure::NotFound:
        return Text::tr("There is no such file.");
    case platform::ReadFailure::Folder:
        return Text::tr("It is a folder.");
    case platform::ReadFailure::NotRegular:
        return Text::tr("It is a pipe, a socket or a device.");
    case platform::ReadFailure::TooLarge:
        return Text::tr("It is larger than 1 MiB.");
    case platform::ReadFailure::AccessDenied:
        return Text::tr("You are not allowed to read it.");
    case platform::ReadFailure::Failed:
        break;
    }
    return Text::tr("It could not be read: %1.").arg(error.reason);
}

[[noreturn]] void fail(PageKind kind, const QString &path, const QString &reason)
{
    throw ExportError(Text::tr("The %1 %2 cannot be used. %3\nNothing was exported. Correct the "
                               "template, or choose another one or none in the settings.")
                          .arg(nameOf(kind), QDir::toNativeSeparators(path), reason));
}

// Returns why the bytes cannot be used as a template, or an empty text if they can.
QString reasonOf(PageKind kind, const QByteArray &bytes)
{
    if (bytes.trimmed().isEmpty())
        return Text::tr("It is empty.");
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(bytes);
    if (utf8.hasError() || text.contains(QChar::Null))
        return Text::tr("It is not UTF-8 text.");
    const auto error = checkTemplate(bytes, knownFields(kind));
    return error ? Text::tr("Line %1: %2").arg(QString::number(error->line), error->text)
                 : QString();
}

QByteArray genericTemplate(PageKind kind)
{
    QFile file(genericPath(kind));
    [[maybe_unused]] const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isOpen);
    return file.readAll();
}

QByteArray templateFile(PageKind kind, const QString &path)
{
    auto read = platform::readRegularFile(platform::nativePath(path), largestTemplate);
    if (const auto *error = std::get_if<platform::FileReadError>(&read))
        fail(kind, path, reasonOf(*error));
    auto bytes = std::get<QByteArray>(std::move(read));
    constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
    if (bytes.startsWith(byteOrderMark))
        bytes.remove(0, byteOrderMark.size());
    if (const QString reason = reasonOf(kind, bytes); !reason.isEmpty())
        fail(kind, path, reason);
    return bytes;
}

} // namespace

std::optional<TemplateError> checkTemplate(QByteArrayView text, const KnownFields &known)
{
    return Checker(text, known).check();
}

PageTemplate::PageTemplate(const std::string &text)
    : m_template(text)
{
    Q_ASSERT(m_template.is_valid());
}

PageTemplate PageTemplate::load(PageKind kind, const QString &path)
{
    const QByteArray text = path.isEmpty() ? genericTemplate(kind) : templateFile(kind, path);
    return PageTemplate(text.toStdString());
}

const std::string &PageTemplate::fillIn(const kainjow::mustache::data &fields)
{
    m_page.clear();
    m_template.render(fields, [this](const std::string &text) { m_page += text; });
    return m_page;
}
