#pragma once

#include "platform/RegularFile.h"

#include <QByteArray>
#include <QString>

#include <filesystem>
#include <functional>
#include <variant>

// The size in bytes above which a file is rejected without being read. It is a hundred times that
// of the longest known recipe, and what the parser makes of such a file fits into the memory of a
// small machine.
constexpr qsizetype largestSrfFile = qsizetype(8) << 20;

struct SrfFileError {
    platform::ReadFailure failure;
    QString message; // for the user: names the file and says what to do
};

// Returns the bytes of the recipe file at path, or why it cannot be read. Calls `beforeReading`
// with the size in bytes, unless it is already known that the file cannot be read.
std::variant<QByteArray, SrfFileError> readSrfFile(
    const std::filesystem::path &path,
    const std::function<void(qsizetype)> &beforeReading = [](qsizetype) {});

// Returns the text of a recipe file in UTF-8 up to its last tag; what follows is not read and does
// not decide the encoding. Valid UTF-8 stays as it is, without a byte order mark at its start.
// Anything else is converted from Windows-1252, whose five undefined bytes become the control
// characters of the same number. Throws platform::UserVisibleError if Qt cannot decode
// Windows-1252.
QByteArray decodeSrf(QByteArray bytes);
