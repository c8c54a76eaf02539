#include "export/PageTemplate.h"

#include "export/ExportError.h"
#include "platform/Paths.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PageTemplate)
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

// Returns why the bytes cannot be text, or an empty text if they can.
QString reasonOf(const QByteArray &bytes)
{
    if (bytes.trimmed().isEmpty())
        return Text::tr("It is empty.");
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(bytes);
    return utf8.hasError() || text.contains(QChar::Null) ? Text::tr("It is not UTF-8 text.")
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
    if (const QString reason = reasonOf(bytes); !reason.isEmpty())
        fail(kind, path, reason);
    return bytes;
}

} // namespace

PageTemplate::PageTemplate(MustacheTemplate contents)
    : m_template(std::move(contents))
{
}

PageTemplate PageTemplate::load(PageKind kind, const QString &path)
{
    const QByteArray text = path.isEmpty() ? genericTemplate(kind) : templateFile(kind, path);
    auto parsed = MustacheTemplate::parse(text, templateFields(kind));
    if (const auto *error = std::get_if<TemplateError>(&parsed))
        fail(kind, path.isEmpty() ? genericPath(kind) : path,
             Text::tr("Line %1: %2").arg(QString::number(error->line), error->text));
    return PageTemplate(std::get<MustacheTemplate>(std::move(parsed)));
}

const std::string &PageTemplate::fillIn(const TemplateData &fields)
{
    m_page.clear();
    m_template.render(fields, m_page);
    return m_page;
}

bool PageTemplate::uses(std::string_view field) const
{
    return m_template.uses(field);
}
