#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace platform {

struct MountedVolume {
    std::filesystem::path path;
    std::string device;
    std::string type; // of its file system
};

// Where a person keeps files: the root, the home directory, and then, by path, the mounted volumes,
// without those that the system has for itself.
std::vector<std::filesystem::path> drives();

// The same of these volumes.
std::vector<std::filesystem::path> drivesAmong(const std::vector<MountedVolume> &volumes,
                                               const std::filesystem::path &home);

// The position of the innermost drive that the directory lies on. The first drive is the root.
std::size_t driveOf(const std::filesystem::path &directory,
                    const std::vector<std::filesystem::path> &drives);

} // namespace platform
