#include "platform/DesktopRegistration.h"

#include "platform/DefaultApplication.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace platform {
namespace {

constexpr int longestToolRun = 5000; // milliseconds

// A desktop entry undoes two layers of escapes: first those of any of its texts, then the quotes of
// an argument. A launcher that looks the program up before it expands "%%" would not find it, so
// then `env` stands in front.
QString command(const QString &program)
{
    const QString reserved = u" \t\n\"'\\><~|&;$*?#()`"_s;
    QString argument;
    for (const QChar c : program) {
        if (u"\"`$\\"_s.contains(c))
            argument += u'\\';
        argument += c == u'%' ? u"%%"_s : QString(c);
    }
    if (std::any_of(program.begin(), program.end(), [&](QChar c) { return reserved.contains(c); }))
        argument = u'"' + argument + u'"';
    if (program.contains(u'%'))
        argument.prepend("env "_L1);
    argument.replace(u'\\', "\\\\"_L1)
        .replace(u'\n', "\\n"_L1)
        .replace(u'\t', "\\t"_L1)
        .replace(u'\r', "\\r"_L1);
    return argument + " %f"_L1;
}

// Debian's own database gives *.srf to a camera's pictures, with weight 50.
QByteArray mimePackage()
{
    return QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>
<mime-info xmlns="http://www.freedesktop.org/standards/shared-mime-info">
  <mime-type type="MIMETYPE">
    <comment>Standard Recipe Format</comment>
    <sub-class-of type="text/plain"/>
    <icon name="pantrywise"/>
    <glob pattern="*.srf" weight="60"/>
  </mime-type>
</mime-info>
)")
        .replace("MIMETYPE", recipeMimeType);
}

std::optional<QByteArray> contentsOf(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

void update(const QString &path, const QByteArray &contents)
{
    if (contentsOf(path) == contents)
        return;
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size())
        file.commit();
}

// Runs a tool that makes the cache file of a directory from the source file, where it is not newer.
void updateCache(const QString &tool, const QString &directory, const QString &cache,
                 const QString &source)
{
    const QFileInfo made(directory + cache);
    const QFileInfo from(directory + source);
    if (!from.exists() || (made.exists() && made.lastModified() >= from.lastModified()))
        return;
    const QString program = QStandardPaths::findExecutable(tool);
    if (program.isEmpty())
        return;
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, {directory});
    if (!process.waitForFinished(longestToolRun)) {
        process.kill();
        process.waitForFinished(longestToolRun);
    }
}

} // namespace

QByteArray desktopEntry(const QString &programPath)
{
    return QByteArray(R"([Desktop Entry]
Type=Application
Name=Pantrywise
GenericName=Recipe Organizer
Comment=Keep recipes, ingredients and utensils
Exec=COMMAND
Icon=pantrywise
Terminal=false
Categories=Office;Database;
MimeType=MIMETYPE;
Actions=Import;

[Desktop Action Import]
Name=Import
Icon=pantrywise
Exec=COMMAND
)")
        .replace("MIMETYPE", recipeMimeType)
        .replace("COMMAND", command(programPath).toUtf8());
}

void registerWithDesktop(const QString &programPath)
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString mime = data + "/mime/"_L1;
    const QString applications = data + "/applications/"_L1;
    const QString package = u"packages/pantrywise.xml"_s;
    const QString entry = QString::fromLatin1(desktopFileId);

    update(mime + package, mimePackage());
    update(applications + entry, desktopEntry(programPath));
    if (const auto icon = contentsOf(u":/icons/pantrywise.svg"_s))
        update(data + "/icons/hicolor/scalable/apps/pantrywise.svg"_L1, *icon);

    const QString defaults = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + "/mimeapps.list"_L1;
    const auto present = contentsOf(defaults); // what cannot be read must not be replaced
    if (present || !QFileInfo::exists(defaults)) {
        update(
            defaults,
            withDefaultApplication(present.value_or(QByteArray()), recipeMimeType, desktopFileId));
    }

    updateCache(u"update-mime-database"_s, mime, u"mime.cache"_s, package);
    updateCache(u"update-desktop-database"_s, applications, u"mimeinfo.cache"_s, entry);
}

} // namespace platform
