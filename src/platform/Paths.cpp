#include "Paths.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

QString joinPath(const QString &directory, const QString &name, PathStyle style)
{
    return directory + (style == PathStyle::Windows ? u'\\' : u'/') + name;
}

QString programPath(const QString &directory, const QString &baseName, PathStyle style)
{
    return joinPath(directory, baseName, style) + (style == PathStyle::Windows ? ".exe"_L1 : ""_L1);
}

} // namespace platform
