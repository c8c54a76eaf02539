#pragma once

#include <QByteArray>
#include <QString>

// The registry: keys that form a tree, each with named values, under the platform's own names for
// its operations. Here both roots belong to the user and lie in one text file,
// Quillmoor/Pantrywise.ini in the user's configuration directory, which a person can read and mend:
//
//     [HKEY_CURRENT_USER]
//     Software\Quillmoor\Pantrywise\Sorting\Recipes=1
//     [HKEY_CLASSES_ROOT]
//     srffile\_default=Standard Recipe Format
//
// `_default` is a key's default value, the one with the empty name; `_key` keeps a key that has no
// value yet. A number is written `dword:5`, bytes that are no text `hex(3):0aff`; a text that reads
// like one of these follows `text:`. Names of keys and values are told apart by case.
// Programs that write at the same time take turns and keep each other's values. A store that cannot
// be read counts as empty and is renamed to Pantrywise.ini.damaged.
namespace platform {

// A root, or a key opened by one of the operations below; 0 is no key.
using HKEY = quint32;
inline constexpr HKEY HKEY_CLASSES_ROOT = 0x80000000;
inline constexpr HKEY HKEY_CURRENT_USER = 0x80000001;

inline constexpr quint32 REG_SZ = 1; // a text; its bytes are UTF-8, with no zero byte added
inline constexpr quint32 REG_DWORD = 4; // a 32-bit number; four bytes, the lowest first

// Bits of the access a key is opened with.
inline constexpr quint32 KEY_QUERY_VALUE = 0x1;
inline constexpr quint32 KEY_SET_VALUE = 0x2;

// What the operations return.
inline constexpr qint32 ERROR_SUCCESS = 0;
inline constexpr qint32 ERROR_FILE_NOT_FOUND = 2; // no such key, no such value
inline constexpr qint32 ERROR_ACCESS_DENIED = 5; // not opened for that; the store is not writable
inline constexpr qint32 ERROR_INVALID_HANDLE = 6;
inline constexpr qint32 ERROR_MORE_DATA = 234; // the value does not fit into the buffer

// Open a key below `parent`, named by a path whose parts are separated by backslashes; the first
// makes what does not exist yet. `opened` is set on success alone and goes back to RegCloseKey.
qint32 RegCreateKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened);
qint32 RegOpenKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened);
qint32 RegCloseKey(HKEY key);

// Tells a value's type and byte count; with a buffer also copies its bytes there, leaving what lies
// behind them. The empty name is the key's default value.
qint32 RegQueryValueExA(HKEY key, const QString &valueName, quint32 &type, qsizetype &byteCount,
                        QByteArray *buffer = nullptr);

// Stores a value of any type, byte for byte. Writes nothing where the same value stands already.
qint32 RegSetValueExA(HKEY key, const QString &valueName, quint32 type, const QByteArray &bytes);

} // namespace platform
