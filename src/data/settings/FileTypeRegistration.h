#pragma once

#include <QString>

#include <vector>

// A key below HKEY_CLASSES_ROOT and its default value.
struct FileTypeEntry {
    QString key;
    QString defaultValue;
};

// What the registry says about *.srf files, in the order in which it is written: the type, its
// description, its icon, its verb and the command of the verb.
std::vector<FileTypeEntry> fileTypeEntries(const QString &programPath);

// Tells the registry and the desktop that this program imports *.srf files. Call it at every start,
// so that the entries are correct after the program has been moved. Does not report a failure.
void registerFileType();
