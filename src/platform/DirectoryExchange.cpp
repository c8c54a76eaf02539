#include "platform/DirectoryExchange.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace platform {

namespace fs = std::filesystem;

std::error_code exchangeDirectories(const fs::path &folder, const fs::path &target)
{
    if (::renameat2(AT_FDCWD, folder.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0)
        return {};
    switch (errno) {
    case EINVAL: // the file system does not support RENAME_EXCHANGE
    case ENOSYS: // the kernel does not support renameat2()
    case ENOENT: // there is no target
        return exchangeDirectoriesInSteps(folder, target);
    default:
        return {errno, std::generic_category()};
    }
}

std::error_code exchangeDirectoriesInSteps(const fs::path &folder, const fs::path &target)
{
    fs::path aside = folder;
    aside += asideSuffix;
    std::error_code failure;
    fs::rename(target, aside, failure);
    const bool hasTarget = failure != std::errc::no_such_file_or_directory;
    if (failure && hasTarget)
        return failure;
    fs::rename(folder, target, failure);
    if (!hasTarget)
        return failure;
    std::error_code ignored;
    fs::rename(aside, failure ? target : folder, ignored);
    return failure;
}

} // namespace platform
