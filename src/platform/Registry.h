#pragma once

#include <QByteArray>
#include <QString>

// The registry: a tree of keys, each with named values. The functions have the names that the
// platform gives them. Both roots belong to the user and lie in one text file,
// Quillmoor/Pantrywise.ini in the user's configuration directory, which a person can read and edit:
//
//     ; a comment, which the next change removes
//     [HKEY_CURRENT_USER]
//     Software\Quillmoor\Pantrywise\Sorting\Recipes=1
//     [HKEY_CLASSES_ROOT]
//     srffile\_default=Standard Recipe Format
//
// `_default` is the default value of a key, whose name is empty. `_key` marks a key that exists but
// has no value yet. A number is written `dword:5`, and bytes of any other type `hex(3):0aff`. A
// text that looks like one of these is preceded by `text:`. Names of keys and values are
// case-sensitive.
//
// Programs that write at the same time do not damage the file, and they keep each other's values
// unless both change one within a few milliseconds. A file that is damaged is renamed to
// Pantrywise.ini.damaged, and the registry starts empty.
namespace platform {

// A root, or an open key, which is never 0.
using HKEY = quint32;
inline constexpr HKEY HKEY_CLASSES_ROOT = 0x80000000;
inline constexpr HKEY HKEY_CURRENT_USER = 0x80000001;

inline constexpr quint32 REG_SZ = 1; // UTF-8 text without a terminating zero byte
inline constexpr quint32 REG_DWORD = 4; // a 32-bit number: four bytes, the lowest first

// The access that a key is opened with, as bits.
inline constexpr quint32 KEY_QUERY_VALUE = 0x1;
inline constexpr quint32 KEY_SET_VALUE = 0x2;

// The results of the functions.
inline constexpr qint32 ERROR_SUCCESS = 0;
inline constexpr qint32 ERROR_FILE_NOT_FOUND = 2; // no such key or no such value
inline constexpr qint32 ERROR_ACCESS_DENIED = 5; // not opened for that, or the file is not writable
inline constexpr qint32 ERROR_INVALID_HANDLE = 6;
inline constexpr qint32 ERROR_MORE_DATA = 234; // the buffer is too small for the value

// Open the key below `parent` whose path, with backslashes as separators, is `path`.
// RegCreateKeyExA creates the key if it does not exist. On success they set `opened`, which the
// caller must close with RegCloseKey.
qint32 RegCreateKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened);
qint32 RegOpenKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened);
qint32 RegCloseKey(HKEY key);

// Returns the type of a value and the number of its bytes. If there is a buffer, copies the bytes
// to its beginning and leaves the rest of it as it is. An empty name is the default value of the
// key.
qint32 RegQueryValueExA(HKEY key, const QString &valueName, quint32 &type, qsizetype &byteCount,
                        QByteArray *buffer = nullptr);

// Stores a value of any type. Does not write the file if the value is already stored. If the file
// cannot be written, the value stays as it was.
qint32 RegSetValueExA(HKEY key, const QString &valueName, quint32 type, const QByteArray &bytes);

} // namespace platform
