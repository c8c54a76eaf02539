#include "platform/Drives.h"

#include "platform/Paths.h"

#include <QDir>
#include <QStorageInfo>

#include <algorithm>
#include <array>
#include <string_view>

namespace platform {

namespace {

bool liesIn(const std::filesystem::path &path, const std::filesystem::path &directory)
{
    const auto differs =
        std::mismatch(directory.begin(), directory.end(), path.begin(), path.end());
    return differs.first == directory.end();
}

// Of a disk or of another machine; the rest is made up by the system.
bool holdsFiles(const MountedVolume &volume)
{
    const std::string_view device = volume.device;
    return volume.type != "squashfs"
        && (device.starts_with("/dev/") || device.starts_with("//")
            || device.find(":/") != std::string_view::npos || volume.type == "fuse.sshfs");
}

bool belongsToTheSystem(const std::filesystem::path &path)
{
    static constexpr std::array directories{"/boot", "/dev", "/etc", "/proc", "/run/user",
                                            "/snap", "/sys", "/usr", "/var"};
    return std::any_of(directories.begin(), directories.end(),
                       [&](const char *directory) { return liesIn(path, directory); });
}

} // namespace

std::vector<std::filesystem::path> drives()
{
    std::vector<MountedVolume> volumes;
    const QList<QStorageInfo> mounted = QStorageInfo::mountedVolumes();
    for (const QStorageInfo &volume : mounted) {
        volumes.push_back({nativePath(volume.rootPath()), volume.device().toStdString(),
                           volume.fileSystemType().toStdString()});
    }
    return drivesAmong(volumes, nativePath(QDir::homePath()));
}

std::vector<std::filesystem::path> drivesAmong(const std::vector<MountedVolume> &volumes,
                                               const std::filesystem::path &home)
{
    const std::filesystem::path root = "/";
    std::vector<std::filesystem::path> named;
    for (const MountedVolume &volume : volumes) {
        if (volume.path != root && volume.path != home && holdsFiles(volume)
            && !belongsToTheSystem(volume.path))
            named.push_back(volume.path);
    }
    std::sort(named.begin(), named.end());
    named.erase(std::unique(named.begin(), named.end()), named.end());
    if (home != root)
        named.insert(named.begin(), home);
    named.insert(named.begin(), root);
    return named;
}

std::size_t driveOf(const std::filesystem::path &directory,
                    const std::vector<std::filesystem::path> &drives)
{
    std::size_t innermost = 0;
    for (std::size_t i = 1; i < drives.size(); ++i) {
        if (liesIn(directory, drives[i]) && liesIn(drives[i], drives[innermost]))
            innermost = i;
    }
    return innermost;
}

} // namespace platform
