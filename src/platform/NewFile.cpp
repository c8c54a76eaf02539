#include "platform/NewFile.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

std::error_code writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(file, bytes.data(), static_cast<size_t>(bytes.size()));
        if (count < 0 && errno != EINTR)
            return lastError();
        if (count > 0)
            bytes = bytes.sliced(count);
    }
    return {};
}

} // namespace

std::error_code writeNewFile(const std::filesystem::path &path, QByteArrayView bytes)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0)
        return lastError();
    const std::error_code failure = writeAll(file, bytes);
    // Some file systems tell only now that there was no room.
    if (::close(file) != 0 && !failure)
        return lastError();
    return failure;
}

} // namespace platform
