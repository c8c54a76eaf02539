#include "CommandLine.h"

#include <QDir>
#include <QFileInfo>

namespace platform {
namespace {

// Not cleaned: the path stays as it was written. Qt takes a leading colon for its own resources.
QString fromCurrentDirectory(const QString &path)
{
    const bool absolute = !path.startsWith(u':') && QDir::isAbsolutePath(path);
    return absolute ? path : QDir::currentPath() + u'/' + path;
}

} // namespace

QString commandLinePath(const QStringList &arguments)
{
    const QString path = arguments.join(u' ');
    if (path.isEmpty())
        return {};
    const bool quoted = path.size() > 2 && path.startsWith(u'"') && path.endsWith(u'"');
    if (quoted && !QFileInfo::exists(fromCurrentDirectory(path)))
        return fromCurrentDirectory(path.mid(1, path.size() - 2));
    return fromCurrentDirectory(path);
}

} // namespace platform
