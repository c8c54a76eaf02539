#pragma once

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

// The directory as it is given, the separator, the name.
QString joinPath(const QString &directory, const QString &name, PathStyle style = nativePathStyle);

// The executable of this base name; Windows adds ".exe".
QString programPath(const QString &directory, const QString &baseName,
                    PathStyle style = nativePathStyle);

// A path as the system has it: bytes, which need not be text. Back as text it is for people to read
// alone, and what is no text in it is replaced.
std::filesystem::path nativePath(const QString &path);
QString displayPath(const std::filesystem::path &path);

// Where a program that lies in the directory starts to look for files: in its folder of that name
// where it lies on a drive, else (on Windows, on a network path) in the root of the usual drive.
struct StartingPlace {
    QString drive; // empty on Unix, where the directory itself says it
    QString directory;
};
StartingPlace startingPlace(const QString &programDirectory, const QString &folder,
                            PathStyle style = nativePathStyle);

} // namespace platform
