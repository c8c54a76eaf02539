#pragma once

#include <filesystem>
#include <system_error>

namespace platform {

// Puts `folder` in the place of `target`, which must be on the same file system. An existing target
// gets the name of `folder` instead. Changes nothing if it fails. The exchange is atomic if the
// file system supports that.
std::error_code exchangeDirectories(const std::filesystem::path &folder,
                                    const std::filesystem::path &target);

// Does the same by renaming. If it is interrupted, the target may be left as `folder` +
// asideSuffix.
inline constexpr char asideSuffix[] = ".old";
std::error_code exchangeDirectoriesInSteps(const std::filesystem::path &folder,
                                           const std::filesystem::path &target);

} // namespace platform
