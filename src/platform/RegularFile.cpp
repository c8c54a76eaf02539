#include "platform/RegularFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace platform {

namespace {

class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    int number() const { return m_number; }

private:
    int m_number;
};

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

std::optional<FileReadError> refusal(const struct stat &status, qsizetype limit)
{
    if (S_ISDIR(status.st_mode))
        return FileReadError{ReadFailure::Folder, {}};
    if (!S_ISREG(status.st_mode))
        return FileReadError{ReadFailure::NotRegular, {}};
    if (status.st_size > limit)
        return FileReadError{ReadFailure::TooLarge, {}};
    return std::nullopt;
}

std::variant<QByteArray, FileReadError> readToEnd(int descriptor, qsizetype expected,
                                                  qsizetype limit)
{
    // One byte more than expected, so that the end shows without a second allocation.
    QByteArray bytes(expected + 1, Qt::Uninitialized);
    qsizetype size = 0;
    while (size <= limit) {
        if (size == bytes.size())
            bytes.resize(std::min(limit + 1, 2 * size + 4096));
        const ssize_t count =
            ::read(descriptor, bytes.data() + size, static_cast<size_t>(bytes.size() - size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errorOf(errno);
        if (count == 0) {
            bytes.truncate(size);
            return bytes;
        }
        size += count;
    }
    return FileReadError{ReadFailure::TooLarge, {}};
}

} // namespace

std::variant<QByteArray, FileReadError> readRegularFile(const std::filesystem::path &path,
                                                        qsizetype limit)
{
    const std::string &name = path.native();
    if (name.find('\0') != std::string::npos) // would name another file to the system
        return FileReadError{ReadFailure::NotFound, {}};

    // Looked at before it is opened, since opening alone sets some devices going, and again after,
    // since another file may have taken the place; not waiting for a writer if that is a pipe.
    struct stat status = {};
    if (::stat(name.c_str(), &status) != 0)
        return errorOf(errno);
    if (const auto error = refusal(status, limit))
        return *error;
    const Descriptor file(::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.number() < 0 || ::fstat(file.number(), &status) != 0)
        return errorOf(errno);
    if (const auto error = refusal(status, limit))
        return *error;
    return readToEnd(file.number(), static_cast<qsizetype>(status.st_size), limit);
}

} // namespace platform
