#pragma once

#include <filesystem>
#include <system_error>

namespace platform {

// Puts a folder in the place of another one on the same file system, which then has the first
// one's name; where nothing is in that place, the folder just moves there. All of it happens or
// nothing, in one step where the file system can.
std::error_code exchangeDirectories(const std::filesystem::path &folder,
                                    const std::filesystem::path &place);

// The same in steps, the first of which is undone where the next fails.
std::error_code exchangeDirectoriesInSteps(const std::filesystem::path &folder,
                                           const std::filesystem::path &place);

} // namespace platform
