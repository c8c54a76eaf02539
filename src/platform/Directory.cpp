#include "platform/Directory.h"

#include "platform/Paths.h"

#include <QDir>
#include <QStorageInfo>

#include <algorithm>
#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

namespace fs = std::filesystem;

struct CloseDirectory {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

// Calls visit with each entry that is not hidden and the descriptor of the directory. The entries
// are examined relative to that: std::filesystem::directory_iterator gives only whole paths, which
// the system refuses to follow if they are too long or lead through too many links.
template <class Visit>
void forEachEntry(const fs::path &path, Visit visit)
{
    const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(path.c_str()));
    if (!directory)
        return;
    while (const dirent *entry = ::readdir(directory.get())) {
        if (entry->d_name[0] != '.')
            visit(*entry, ::dirfd(directory.get()));
    }
}

bool isDirectory(const dirent &entry, int descriptor)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status = {};
    return ::fstatat(descriptor, entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

bool contains(const fs::path &directory, const fs::path &path)
{
    const auto differs =
        std::mismatch(directory.begin(), directory.end(), path.begin(), path.end());
    return differs.first == directory.end();
}

// Returns whether the volume is on a disk or on another machine. All others, such as /proc and
// tmpfs, are provided by the kernel and keep no files of the user.
bool storesFiles(const MountedVolume &volume)
{
    const std::string_view device = volume.device;
    return volume.fileSystem != "squashfs"
        && (device.starts_with("/dev/") || device.starts_with("//")
            || device.find(":/") != std::string_view::npos || volume.fileSystem == "fuse.sshfs");
}

bool belongsToTheSystem(const fs::path &path)
{
    static constexpr std::array directories{"/boot", "/dev", "/etc", "/proc", "/run/user",
                                            "/snap", "/sys", "/usr", "/var"};
    return std::any_of(directories.begin(), directories.end(),
                       [&](const char *directory) { return contains(directory, path); });
}

} // namespace

bool canBeOpened(const fs::path &directory)
{
    std::error_code error; // then it is not a directory
    return fs::is_directory(directory, error) && ::access(directory.c_str(), R_OK | X_OK) == 0;
}

std::vector<QByteArray> filesEndingIn(QByteArrayView suffix, const fs::path &directory)
{
    std::vector<QByteArray> names;
    forEachEntry(directory, [&](const dirent &entry, int descriptor) {
        const QByteArrayView name(entry.d_name);
        if (name.size() >= suffix.size()
            && name.last(suffix.size()).compare(suffix, Qt::CaseInsensitive) == 0
            && !isDirectory(entry, descriptor))
            names.push_back(name.toByteArray());
    });
    return names;
}

std::vector<fs::path> subdirectories(const fs::path &directory)
{
    std::vector<fs::path> found;
    forEachEntry(directory, [&](const dirent &entry, int descriptor) {
        if (isDirectory(entry, descriptor)
            && ::faccessat(descriptor, entry.d_name, R_OK | X_OK, 0) == 0)
            found.push_back(directory / entry.d_name);
    });
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<fs::path> drives()
{
    std::vector<MountedVolume> volumes;
    const QList<QStorageInfo> mounted = QStorageInfo::mountedVolumes();
    for (const QStorageInfo &volume : mounted) {
        volumes.push_back({nativePath(volume.rootPath()), volume.device().toStdString(),
                           volume.fileSystemType().toStdString()});
    }
    return drivesAmong(volumes, nativePath(QDir::homePath()));
}

std::vector<fs::path> drivesAmong(const std::vector<MountedVolume> &volumes, const fs::path &home)
{
    const fs::path root = "/";
    std::vector<fs::path> found;
    for (const MountedVolume &volume : volumes) {
        if (volume.path != root && volume.path != home && storesFiles(volume)
            && !belongsToTheSystem(volume.path))
            found.push_back(volume.path);
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    if (home != root)
        found.insert(found.begin(), home);
    found.insert(found.begin(), root);
    return found;
}

std::size_t driveOf(const fs::path &directory, const std::vector<fs::path> &drives)
{
    std::size_t innermost = 0;
    for (std::size_t i = 1; i < drives.size(); ++i) {
        if (contains(drives[i], directory) && contains(drives[innermost], drives[i]))
            innermost = i;
    }
    return innermost;
}

} // namespace platform
