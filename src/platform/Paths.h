#pragma once

#include <QByteArrayView>
#include <QString>

#include <filesystem>

// How the platform writes the paths of files and programs.
namespace platform {

enum class PathStyle { Unix, Windows };

#ifdef Q_OS_WIN
inline constexpr PathStyle nativePathStyle = PathStyle::Windows;
#else
inline constexpr PathStyle nativePathStyle = PathStyle::Unix;
#endif

// Returns the directory as given, the separator and the name.
QString joinPath(const QString &directory, const QString &name, PathStyle style = nativePathStyle);

// Returns the path of an executable; on Windows ".exe" is added to its base name.
QString programPath(const QString &directory, const QString &baseName,
                    PathStyle style = nativePathStyle);

// Returns the directory in which a program starts to look for files: the given folder in its own
// directory, or the root of drive c: if the program is on a network share of Windows.
QString startingDirectory(const QString &programDirectory, const QString &folder,
                          PathStyle style = nativePathStyle);

// Converts a path between Qt and the system. The system's paths are bytes that need not be text;
// displayPath() replaces what is not, so that its result can be shown but may not name the file.
std::filesystem::path nativePath(const QString &path);
QString displayPath(const std::filesystem::path &path);

// Returns a path as text that shows each byte that is not valid UTF-8 as for example "\xE9".
QString escapeInvalidText(QByteArrayView path);

} // namespace platform
