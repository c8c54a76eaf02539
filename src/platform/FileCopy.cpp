#include "platform/FileCopy.h"

#include "platform/DiskSync.h"

#include <QtGlobal>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace fs = std::filesystem;

namespace {

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

class Descriptor
{
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~Descriptor()
    {
        if (isOpen())
            ::close(m_descriptor);
    }

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

private:
    Q_DISABLE_COPY_MOVE(Descriptor)

    int m_descriptor;
};

std::error_code write(int target, const char *bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t count = ::write(target, bytes, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return lastError();
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return {};
}

std::error_code copyByReading(int source, int target, off_t from)
{
    std::array<char, 1 << 16> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): is filled
    for (;;) {
        const ssize_t count = ::pread(source, buffer.data(), buffer.size(), from);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return lastError();
        if (count == 0)
            return {};
        if (const auto failure = write(target, buffer.data(), static_cast<std::size_t>(count)))
            return failure;
        from += count;
    }
}

// copy_file_range() shares blocks on some file systems for which FICLONE does not, and copies
// inside the kernel on others. It is not available for every pair of file systems.
std::error_code copyBytes(int source, int target)
{
    if (::ioctl(target, FICLONE, source) == 0)
        return {};
    constexpr std::size_t atOnce = 1 << 30;
    off_t position = 0;
    while (::copy_file_range(source, &position, target, nullptr, atOnce, 0) > 0) { }
    return copyByReading(source, target, position); // at the end of the file reads nothing
}

std::error_code copyAndSync(int source, int target)
{
    struct stat status = {};
    if (::fstat(source, &status) != 0)
        return lastError();
    if (const std::error_code failure = copyBytes(source, target))
        return failure;
    constexpr mode_t permissions = S_IRWXU | S_IRWXG | S_IRWXO;
    ::fchmod(target, (status.st_mode & permissions) | S_IWUSR); // some file systems have none
    return ::fsync(target) == 0 ? std::error_code() : lastError();
}

} // namespace

std::error_code copyOpenFile(int source, const fs::path &target)
{
    std::error_code failure;
    fs::remove(target, failure);
    constexpr mode_t readableByOwner = S_IRUSR | S_IWUSR; // until the copy is complete
    const Descriptor copy(
        ::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, readableByOwner));
    if (!copy.isOpen())
        return lastError();
    failure = copyAndSync(source, copy.get());
    if (failure)
        ::unlink(target.c_str());
    return failure;
}

std::error_code copyFile(const fs::path &source, const fs::path &target)
{
    const Descriptor opened(::open(source.c_str(), O_RDONLY | O_CLOEXEC));
    return opened.isOpen() ? copyOpenFile(opened.get(), target) : lastError();
}

std::error_code renameDurably(const fs::path &from, const fs::path &to)
{
    std::error_code failure;
    fs::rename(from, to, failure);
    return failure ? failure : syncToDisk(to.parent_path());
}

std::error_code renameToNewName(const fs::path &from, const fs::path &to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0) {
        if (errno != EINVAL && errno != ENOSYS)
            return lastError();
        // The file system or the kernel does not support RENAME_NOREPLACE.
        if (::link(from.c_str(), to.c_str()) != 0)
            return lastError();
        ::unlink(from.c_str());
    }
    return syncToDisk(fs::absolute(to).parent_path());
}

} // namespace platform
