#pragma once

#include <filesystem>
#include <system_error>

// Copies and renames that survive a power cut: each returns after the disk has them.
namespace platform {

// Copies a whole open file into a new file at `target`, with the permissions that it has and that
// of its owner to write. The copy shares the blocks of the source if the file system can do that.
// Replaces what is at `target`, and leaves nothing there if it fails. Reads through the descriptor
// without moving its position.
std::error_code copyOpenFile(int source, const std::filesystem::path &target);

// Does the same with a file that this program has no locks on: closing it would release them.
std::error_code copyFile(const std::filesystem::path &source, const std::filesystem::path &target);

// Renames a file within its directory. Replaces a file that has the new name.
std::error_code renameDurably(const std::filesystem::path &from, const std::filesystem::path &to);

// Does the same, but fails with std::errc::file_exists if a file has the new name, even one that is
// made at the same time. The directories may differ.
std::error_code renameToNewName(const std::filesystem::path &from, const std::filesystem::path &to);

} // namespace platform
