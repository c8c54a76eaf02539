#pragma once

#include <QByteArray>
#include <QString>

// Tells a freedesktop.org desktop about the program and its recipe files: the MIME type of *.srf
// files, the program with its action Import, their icon, and the default application of the type.
namespace platform {

inline constexpr char recipeMimeType[] = "text/x-standard-recipe";
inline constexpr char desktopFileId[] = "pantrywise.desktop";

// Brings all of this up to date below the user's data and configuration directories. Writes only
// what differs, and replaces each file in one step. Does not report a failure.
void registerWithDesktop(const QString &programPath);

// Returns the desktop entry of the program.
QByteArray desktopEntry(const QString &programPath);

// Returns the contents of a mimeapps.list with `desktopId` as the first default application of the
// MIME type, and with everything else as it is.
QByteArray withDefaultApplication(const QByteArray &contents, const QByteArray &mimeType,
                                  const QByteArray &desktopId);

} // namespace platform
