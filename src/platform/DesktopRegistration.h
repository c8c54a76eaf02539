#pragma once

#include <QString>

// What the freedesktop world is told of the program and its recipe files: the type of *.srf, the
// program with its verb Import, their icon, and the program as that type's default application.
namespace platform {

inline constexpr char recipeMimeType[] = "text/x-standard-recipe";
inline constexpr char desktopFileId[] = "pantrywise.desktop";

QByteArray desktopEntry(const QString &programPath);

// Brings all of it up to date below the user's data and configuration directories. Only what
// differs is written, each file whole under another name first; what cannot be written is left.
void registerWithDesktop(const QString &programPath);

} // namespace platform
