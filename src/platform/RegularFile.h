#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>
#include <functional>
#include <variant>

namespace platform {

enum class ReadFailure {
    NotFound,
    Folder,
    NotRegular, // a pipe, a socket or a device
    TooLarge,
    AccessDenied,
    Failed, // any other failure; FileReadError::reason describes it
};

struct FileReadError {
    ReadFailure failure;
    QString reason; // the system's description; empty unless failure is Failed
};

// Returns the contents of a regular file, or of the file that a symbolic link leads to. Never waits
// for a pipe or a device, and never holds more than limit + 1 bytes: a file that is larger, or that
// grows beyond the limit while it is read, is TooLarge. Calls `beforeReading` with the file's size
// before the first byte is read.
std::variant<QByteArray, FileReadError> readRegularFile(
    const std::filesystem::path &path, qsizetype limit,
    const std::function<void(qsizetype)> &beforeReading = [](qsizetype) {});

} // namespace platform
