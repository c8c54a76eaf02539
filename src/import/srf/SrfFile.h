#pragma once

#include "platform/RegularFile.h"

#include <QByteArray>
#include <QString>

#include <filesystem>
#include <variant>

// Larger files are refused unread: a hundred times the longest recipe that was ever met, and what
// can be made of it still fits into the memory of a small machine.
constexpr qsizetype largestSrfFile = qsizetype(8) << 20;

struct SrfFileError {
    platform::ReadFailure failure;
    QString message; // for a person: names the file and what to do
};

// The bytes of the recipe file at path.
std::variant<QByteArray, SrfFileError> readSrfFile(const std::filesystem::path &path);
