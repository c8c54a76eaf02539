#include "export/PageTemplate.h"

#include "export/ExportError.h"
#include "export/PageFields.h"
#include "export/TemplateCheck.h"
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
        return Text::tr("You have no right to read it.");
    case platform::ReadFailure::Failed:
        break;
    }
    return Text::tr("It could not be read: %1.").arg(error.reason);
}

[[noreturn]] void refuse(PageKind kind, const QString &path, const QString &reason)
{
    throw ExportError(Text::tr("The %1 %2 cannot be used. %3\nNothing was exported. Put the "
                               "template right, or choose another one or none in the settings.")
                          .arg(nameOf(kind), QDir::toNativeSeparators(path), reason));
}

// The first reason against the bytes, or none.
QString faultOf(PageKind kind, const QByteArray &bytes)
{
    if (bytes.trimmed().isEmpty())
        return Text::tr("It is empty.");
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(bytes);
    if (utf8.hasError() || text.contains(QChar::Null))
        return Text::tr("It is no text in UTF-8.");
    const auto fault = checkTemplate(bytes.toStdString(), knownFields(kind));
    return fault ? Text::tr("Line %1: %2").arg(QString::number(fault->line), fault->text)
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
        refuse(kind, path, reasonOf(*error));
    auto bytes = std::get<QByteArray>(std::move(read));
    constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
    if (bytes.startsWith(byteOrderMark))
        bytes.remove(0, byteOrderMark.size());
    if (const QString fault = faultOf(kind, bytes); !fault.isEmpty())
        refuse(kind, path, fault);
    return bytes;
}

} // namespace

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
    m_template.render(fields, [this](const std::string &piece) { m_page += piece; });
    return m_page;
}
