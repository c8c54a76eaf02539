#pragma once

#include <QByteArray>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

// Directories and drives. Paths are std::filesystem::path and names are QByteArray, because QDir
// cannot name a file whose name is not valid text.
namespace platform {

// Returns whether the path is a directory that the user may list and enter.
bool canBeOpened(const std::filesystem::path &directory);

// Returns the names of the files that end in an ASCII suffix of any letter case, in the order of
// the file system, without hidden files. A symbolic link counts as its target. Returns nothing if
// the directory cannot be read.
std::vector<QByteArray> filesEndingIn(QByteArrayView suffix,
                                      const std::filesystem::path &directory);

// Returns the paths of the directories in a directory that can be opened, sorted, without hidden
// ones.
std::vector<std::filesystem::path> subdirectories(const std::filesystem::path &directory);

struct MountedVolume {
    std::filesystem::path path;
    std::string device;
    std::string fileSystem; // its type, such as "ext4"
};

// Returns the places in which people keep files: the root, the home directory and then, sorted by
// path, the mounted volumes except those of the system.
std::vector<std::filesystem::path> drives();

// Does the same for the given volumes.
std::vector<std::filesystem::path> drivesAmong(const std::vector<MountedVolume> &volumes,
                                               const std::filesystem::path &home);

// Returns the index of the innermost drive that contains the directory. The first drive must be the
// root.
std::size_t driveOf(const std::filesystem::path &directory,
                    const std::vector<std::filesystem::path> &drives);

} // namespace platform
