#pragma once

#include <filesystem>
#include <system_error>

// Waits until what was written is on the disk, so that a power cut does not take it back.
namespace platform {

// Does so for a file, or for the names in a directory. Succeeds on a file system that cannot do it
// for directories.
std::error_code syncToDisk(const std::filesystem::path &path);

// Does so for the whole file system that the directory is on, which for many files is much faster
// than one after the other. Also returns failures of earlier writes to that file system that nobody
// has been told of.
std::error_code syncFileSystem(const std::filesystem::path &directory);

} // namespace platform
