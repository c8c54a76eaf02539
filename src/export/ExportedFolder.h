#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

// Folders of exported pages. A list of the exported files is kept in each of them: a folder without
// the list was not made by an export, and neither was a file that is not in the list. Some desktops
// put a file of their own into every folder; these files do not count and are removed with the
// pages.

inline constexpr QLatin1StringView fileListName{"pantrywise-files.txt"};

// Returns the contents of the list of files with these names.
QByteArray fileListOf(const QStringList &names);

// Returns the names of the exported files in the folder, with that of the list, or nothing if it
// has no list.
std::optional<QSet<QString>> exportedFiles(const QString &folder);

// Throws ForeignFolderError if the path exists and is not a folder that contains only exported
// files.
void requireExported(const QString &folder);

// Removes the files, then their list, and then the folder if it is empty. Keeps every other file.
// The list comes last so that a later call can finish an interrupted removal.
void removePages(const QString &folder, const QSet<QString> &files);

// Returns the paths of the folders in the directory that have the list and a name that an export
// gives to a folder of pages while it runs.
QStringList leftOverFolders(const QString &directory);

// The name of the folder that an export writes to. If it is taken, as many plus signs as necessary
// are appended.
inline constexpr QLatin1StringView stagingName{"Pantrywise.new"};
