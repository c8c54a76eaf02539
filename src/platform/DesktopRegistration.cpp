#include "platform/DesktopRegistration.h"

#include <QByteArrayList>
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

constexpr int toolTimeout = 5000; // milliseconds

// Returns the Exec line. Its path is escaped twice: as an argument in quotes, and then as any
// string of a desktop entry. If the path contains "%", `env` runs the program, because some
// launchers check that the program exists before they replace "%%" by "%".
QString execCommand(const QString &program)
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

// The weight is higher than the 50 with which the shared MIME database assigns *.srf to the raw
// pictures of a camera.
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

// Returns nothing if the file cannot be read.
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

// Runs a tool that creates the cache file of a directory, unless the cache is newer than the
// source.
void updateCache(const QString &tool, const QString &directory, const QString &cache,
                 const QString &source)
{
    const QFileInfo cacheFile(directory + cache);
    const QFileInfo sourceFile(directory + source);
    if (!sourceFile.exists()
        || (cacheFile.exists() && cacheFile.lastModified() >= sourceFile.lastModified()))
        return;
    const QString program = QStandardPaths::findExecutable(tool);
    if (program.isEmpty())
        return;
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, {directory});
    if (!process.waitForFinished(toolTimeout)) {
        process.kill();
        process.waitForFinished(toolTimeout);
    }
}

constexpr char defaultsSection[] = "[Default Applications]";

// Returns the applications of a line "type=a.desktop;b.desktop;", with `desktopId` moved to the
// front.
QByteArray movedToFront(const QByteArray &desktopId, const QByteArray &list)
{
    QByteArray result = desktopId + ';';
    for (const QByteArray &id : list.split(';')) {
        if (!id.trimmed().isEmpty() && id.trimmed() != desktopId)
            result += id.trimmed() + ';';
    }
    return result;
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
        .replace("COMMAND", execCommand(programPath).toUtf8());
}

QByteArray withDefaultApplication(const QByteArray &contents, const QByteArray &mimeType,
                                  const QByteArray &desktopId)
{
    QByteArrayList lines = contents.split('\n');
    qsizetype heading = -1;
    bool inSection = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray line = lines[i].trimmed();
        if (line.startsWith('[')) {
            inSection = line == defaultsSection;
            if (inSection && heading < 0)
                heading = i;
        }
        const qsizetype equals = line.indexOf('=');
        if (!inSection || equals < 0 || line.left(equals).trimmed() != mimeType)
            continue;
        const QByteArray list = line.mid(equals + 1);
        if (list.split(';').first().trimmed() == desktopId)
            return contents;
        lines[i] = mimeType + '=' + movedToFront(desktopId, list);
        return lines.join('\n');
    }

    const QByteArray added = mimeType + '=' + desktopId + ';';
    if (heading >= 0) {
        lines.insert(heading + 1, added);
        return lines.join('\n');
    }
    const bool endsInLine = !contents.isEmpty() && !contents.endsWith('\n');
    return contents + (endsInLine ? "\n" : "") + (contents.isEmpty() ? "" : "\n") + defaultsSection
        + '\n' + added + '\n';
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
    const auto present = contentsOf(defaults);
    if (present || !QFileInfo::exists(defaults)) { // otherwise the user's choices would be lost
        update(
            defaults,
            withDefaultApplication(present.value_or(QByteArray()), recipeMimeType, desktopFileId));
    }

    updateCache(u"update-mime-database"_s, mime, u"mime.cache"_s, package);
    updateCache(u"update-desktop-database"_s, applications, u"mimeinfo.cache"_s, entry);
}

} // namespace platform
