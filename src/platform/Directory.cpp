#include "platform/Directory.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

struct CloseDirectory {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

// Calls visit with each entry that is not hidden.
template <class Visit>
void forEachEntry(const std::filesystem::path &path, Visit visit)
{
    const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(path.c_str()));
    if (!directory)
        return;
    while (const dirent *entry = ::readdir(directory.get())) {
        if (entry->d_name[0] != '.')
            visit(*entry, ::dirfd(directory.get()));
    }
}

// Most file systems tell with the name; a link and the rest have to be looked at.
bool isDirectory(const dirent &entry, int directory)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status = {};
    return ::fstatat(directory, entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

bool canBeOpened(const std::filesystem::path &directory)
{
    std::error_code unknown;
    return std::filesystem::is_directory(directory, unknown)
        && ::access(directory.c_str(), R_OK | X_OK) == 0;
}

std::vector<QByteArray> filesEndingIn(QByteArrayView suffix, const std::filesystem::path &directory)
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

std::vector<std::filesystem::path> subdirectories(const std::filesystem::path &directory)
{
    std::vector<std::filesystem::path> found;
    forEachEntry(directory, [&](const dirent &entry, int descriptor) {
        if (isDirectory(entry, descriptor)
            && ::faccessat(descriptor, entry.d_name, R_OK | X_OK, 0) == 0)
            found.push_back(directory / entry.d_name);
    });
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace platform
