#pragma once

#include <QString>

// How the platform writes the paths of files and programs.
namespace platform {

enum class PathStyle { Unix, Windows };

#ifdef Q_OS_WIN
inline constexpr PathStyle nativePathStyle = PathStyle::Windows;
#else
inline constexpr PathStyle nativePathStyle = PathStyle::Unix;
#endif

// The directory as it is given, the separator, the name.
QString joinPath(const QString &directory, const QString &name, PathStyle style = nativePathStyle);

// The executable of this base name; Windows adds ".exe".
QString programPath(const QString &directory, const QString &baseName,
                    PathStyle style = nativePathStyle);

} // namespace platform
