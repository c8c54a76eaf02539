#include "platform/Paths.h"

#include <QFile>

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

QString startingDirectory(const QString &programDirectory, const QString &folder, PathStyle style)
{
    if (style == PathStyle::Windows && programDirectory.startsWith("\\\\"_L1))
        return u"c:\\"_s;
    return joinPath(programDirectory, folder, style);
}

std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

QString displayPath(const std::filesystem::path &path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

QString escapeInvalidText(QByteArrayView path)
{
    QString text;
    while (!path.isEmpty()) {
        qsizetype length = 1; // of the character in bytes
        while (length < path.size() && !path.first(length).isValidUtf8() && length < 4)
            ++length;
        const QByteArrayView character = path.first(length);
        if (character.isValidUtf8()) {
            text += QString::fromUtf8(character);
            path = path.sliced(length);
        } else {
            text += QString::asprintf("\\x%02X", static_cast<unsigned char>(path.front()));
            path = path.sliced(1);
        }
    }
    return text;
}

} // namespace platform
