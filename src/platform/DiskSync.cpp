#include "platform/DiskSync.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace platform {
namespace {

std::error_code callWithDescriptor(const std::filesystem::path &path, int (*sync)(int))
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return {errno, std::generic_category()};
    const std::error_code failure(sync(descriptor) == 0 ? 0 : errno, std::generic_category());
    ::close(descriptor);
    return failure;
}

} // namespace

std::error_code syncToDisk(const std::filesystem::path &path)
{
    const std::error_code failure = callWithDescriptor(path, ::fsync);
    return failure == std::errc::invalid_argument ? std::error_code() : failure;
}

std::error_code syncFileSystem(const std::filesystem::path &directory)
{
    return callWithDescriptor(directory, ::syncfs);
}

} // namespace platform
