#include "platform/RegularFile.h"

#include <QScopeGuard>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace platform {
namespace {

FileReadError errorOf(int code)
{
    switch (code) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
        return {ReadFailure::NotFound, {}};
    case EACCES:
    case EPERM:
        return {ReadFailure::AccessDenied, {}};
    default:
        return {ReadFailure::Failed, QString::fromLocal8Bit(std::generic_category().message(code))};
    }
}

std::optional<FileReadError> findObstacle(const struct stat &status, qsizetype limit)
{
    if (S_ISDIR(status.st_mode))
        return FileReadError{ReadFailure::Folder, {}};
    if (!S_ISREG(status.st_mode))
        return FileReadError{ReadFailure::NotRegular, {}};
    if (status.st_size > limit)
        return FileReadError{ReadFailure::TooLarge, {}};
    return std::nullopt;
}

// Asks for one byte more than expected, so that one call mostly reads all and finds the end. Reads
// on if there is more or less, because after a part has been read the system reports an error only
// at the next call.
std::variant<QByteArray, FileReadError> readToEnd(int descriptor, qsizetype expected,
                                                  qsizetype limit)
{
    QByteArray bytes(expected + 1, Qt::Uninitialized);
    qsizetype size = 0;
    while (size <= limit) {
        if (size == bytes.size())
            bytes.resize(std::min(limit + 1, 2 * size + 4096));
        const auto room = static_cast<std::size_t>(bytes.size() - size);
        const ssize_t count = ::read(descriptor, bytes.data() + size, room);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errorOf(errno);
        const bool isWhole = size == 0 && count == expected;
        size += count;
        if (count == 0 || isWhole) {
            bytes.truncate(size);
            return bytes;
        }
    }
    return FileReadError{ReadFailure::TooLarge, {}};
}

} // namespace

std::variant<QByteArray, FileReadError>
readRegularFile(const std::filesystem::path &path, qsizetype limit,
                const std::function<void(qsizetype)> &beforeReading)
{
    const std::string &name = path.native();
    if (name.find('\0') != std::string::npos) // the system would open another file
        return FileReadError{ReadFailure::NotFound, {}};

    // The type is checked before the file is opened, because opening some devices has an effect,
    // and again afterwards, because another file may have taken its place. QFile::open(path) cannot
    // do this: it waits for the writer of a pipe and names only files whose name is valid text.
    struct stat status = {};
    if (::stat(name.c_str(), &status) != 0)
        return errorOf(errno);
    if (const auto error = findObstacle(status, limit))
        return *error;
    const int descriptor = ::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return errorOf(errno);
    const auto close = qScopeGuard([descriptor] { ::close(descriptor); });
    if (::fstat(descriptor, &status) != 0)
        return errorOf(errno);
    if (const auto error = findObstacle(status, limit))
        return *error;
    const auto size = static_cast<qsizetype>(status.st_size);
    beforeReading(size);
    return readToEnd(descriptor, size, limit);
}

} // namespace platform
