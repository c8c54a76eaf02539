#pragma once

#include "platform/RegularFile.h"

#include <QByteArray>
#include <QString>

#include <filesystem>
#include <variant>

// Larger files are not read. A hundred times the longest recipe we know of fits, and so does what
// the parser makes of it into the memory of a small machine.
constexpr qsizetype largestSrfFile = qsizetype(8) << 20;

struct SrfFileError {
    platform::ReadFailure failure;
    QString message; // for the user: names the file and says what to do
};

// Returns the bytes of the recipe file at path.
std::variant<QByteArray, SrfFileError> readSrfFile(const std::filesystem::path &path);

// Returns the text of a recipe file. Valid UTF-8 is decoded as UTF-8, without a byte order mark at
// its start, and anything else as Windows-1252, whose five undefined bytes become the control
// characters of the same number. Throws platform::UserVisibleError if Qt cannot decode
// Windows-1252.
QString decodeSrf(QByteArrayView bytes);
