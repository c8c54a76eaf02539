#pragma once

#include <QtGlobal>

#include <filesystem>
#include <system_error>

// A folder for files that are not finished, which only one program at a time uses. The system
// releases the lock of a program that was killed, and leaves its files there.
class LockedFolder
{
public:
    explicit LockedFolder(std::filesystem::path path);

    // Removes the folder if it is locked by this object and has no other files left in it.
    ~LockedFolder();

    // Creates the folder if it does not exist, and locks it. Returns device_or_resource_busy if
    // another program has it locked. Succeeds on a file system without locks.
    std::error_code lock();

    // Returns the path of a file in the folder.
    std::filesystem::path operator/(const char *name) const { return m_path / name; }
    const std::filesystem::path &path() const { return m_path; }

private:
    Q_DISABLE_COPY_MOVE(LockedFolder)

    bool isStillThere() const;
    void close();

    std::filesystem::path m_path;
    std::filesystem::path m_lockFile;
    int m_lock = -1;
};
