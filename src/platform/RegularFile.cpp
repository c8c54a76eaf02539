#include "platform/RegularFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>

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

// Reads until nothing is left, because after a part has been read QFile reports an error only at
// the next call.
std::variant<QByteArray, FileReadError> readToEnd(QFile &file, qsizetype expected, qsizetype limit)
{
    QByteArray bytes(expected + 1, Qt::Uninitialized); // one more, to detect the end
    qsizetype size = 0;
    while (size <= limit) {
        if (size == bytes.size())
            bytes.resize(std::min(limit + 1, 2 * size + 4096));
        const qint64 count = file.read(bytes.data() + size, bytes.size() - size);
        if (count < 0)
            return FileReadError{ReadFailure::Failed, file.errorString()};
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
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
                   QFileDevice::AutoCloseHandle))
        return FileReadError{ReadFailure::Failed, file.errorString()};
    if (::fstat(descriptor, &status) != 0)
        return errorOf(errno);
    if (const auto error = findObstacle(status, limit))
        return *error;
    return readToEnd(file, static_cast<qsizetype>(status.st_size), limit);
}

} // namespace platform
