#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>
#include <variant>

namespace platform {

enum class ReadFailure {
    NotFound, // nothing exists at the path
    Folder,
    NotRegular, // a pipe, a socket or a device
    TooLarge,
    AccessDenied,
    Failed, // anything else: FileReadError::reason says what
};

struct FileReadError {
    ReadFailure failure;
    QString reason; // the system's own words, empty unless failure is Failed
};

// The bytes of the regular file at path, links followed. Never waits for a pipe or a device, and
// holds at most limit + 1 bytes: a file that is larger is refused before it is read, one that grows
// beyond the limit meanwhile, then. A file that changes meanwhile gives the bytes that were met.
std::variant<QByteArray, FileReadError> readRegularFile(const std::filesystem::path &path,
                                                        qsizetype limit);

} // namespace platform
