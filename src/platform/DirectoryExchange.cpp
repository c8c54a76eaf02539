#include "platform/DirectoryExchange.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace platform {

namespace fs = std::filesystem;

std::error_code exchangeDirectories(const fs::path &folder, const fs::path &place)
{
    if (::renameat2(AT_FDCWD, folder.c_str(), AT_FDCWD, place.c_str(), RENAME_EXCHANGE) == 0)
        return {};
    switch (errno) {
    case EINVAL: // a file system that cannot
    case ENOSYS: // a kernel that cannot
    case ENOENT: // nothing is in the place
        return exchangeDirectoriesInSteps(folder, place);
    default:
        return {errno, std::generic_category()};
    }
}

std::error_code exchangeDirectoriesInSteps(const fs::path &folder, const fs::path &place)
{
    fs::path aside = folder;
    aside += ".old";
    std::error_code failure;
    fs::rename(place, aside, failure);
    const bool isFree = failure == std::errc::no_such_file_or_directory;
    if (failure && !isFree)
        return failure;
    fs::rename(folder, place, failure);
    if (isFree)
        return failure;
    std::error_code ignored;
    fs::rename(aside, failure ? place : folder, ignored);
    return failure;
}

} // namespace platform
