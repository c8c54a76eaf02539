#include "FolderExchange.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace platform {

namespace {

std::error_code moved(const QByteArray &from, const QByteArray &to)
{
    if (::rename(from.constData(), to.constData()) == 0)
        return {};
    return {errno, std::generic_category()};
}

} // namespace

std::error_code exchangeFolders(const QString &folder, const QString &place)
{
    const QByteArray from = QFile::encodeName(folder);
    const QByteArray to = QFile::encodeName(place);
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE) == 0)
        return {};
    switch (errno) {
    case EINVAL: // a file system that cannot
    case ENOSYS: // a kernel that cannot
    case ENOENT: // nothing is in the place
        return exchangeFoldersInSteps(folder, place);
    default:
        return {errno, std::generic_category()};
    }
}

std::error_code exchangeFoldersInSteps(const QString &folder, const QString &place)
{
    const QByteArray from = QFile::encodeName(folder);
    const QByteArray to = QFile::encodeName(place);
    const QByteArray aside = from + ".old";
    const std::error_code setAside = moved(to, aside);
    if (setAside == std::errc::no_such_file_or_directory)
        return moved(from, to);
    if (setAside)
        return setAside;
    if (const std::error_code failure = moved(from, to)) {
        moved(aside, to);
        return failure;
    }
    return moved(aside, from);
}

} // namespace platform
