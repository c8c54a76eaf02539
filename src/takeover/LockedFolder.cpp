#include "takeover/LockedFolder.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

LockedFolder::LockedFolder(fs::path path)
    : m_path(std::move(path))
    , m_lockFile(m_path / "lock")
{
}

// Removes the lock file while it is locked, so that no other program can be using the folder.
LockedFolder::~LockedFolder()
{
    if (m_lock < 0)
        return;
    ::unlink(m_lockFile.c_str());
    ::rmdir(m_path.c_str()); // fails if there are other files in it
    close();
}

std::error_code LockedFolder::lock()
{
    constexpr int attempts = 100; // each after another program has removed what this one has found
    constexpr mode_t readableByAll = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
    for (int i = 0; i < attempts; ++i) {
        std::error_code failure;
        fs::create_directory(m_path, failure);
        if (failure)
            return failure;
        m_lock =
            ::open(m_lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, readableByAll);
        if (m_lock < 0 && errno == ENOENT)
            continue;
        if (m_lock < 0)
            return {errno, std::generic_category()};
        if (::flock(m_lock, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            close();
            return std::make_error_code(std::errc::device_or_resource_busy);
        }
        if (isStillThere())
            return {};
        close();
    }
    return std::make_error_code(std::errc::device_or_resource_busy);
}

// Whether the lock is on the file that other programs find there.
bool LockedFolder::isStillThere() const
{
    struct stat opened = {};
    struct stat found = {};
    return ::fstat(m_lock, &opened) == 0 && ::lstat(m_lockFile.c_str(), &found) == 0
        && opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
}

void LockedFolder::close()
{
    ::close(std::exchange(m_lock, -1));
}
