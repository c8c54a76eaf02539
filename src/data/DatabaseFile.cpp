#include "data/DatabaseFile.h"

#include <QFileInfo>
#include <QtEndian>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace {

// https://www.sqlite.org/fileformat.html, "The Database Header"
constexpr qsizetype headerSize = 100;
constexpr QByteArrayView magic("SQLite format 3\0", 16);
constexpr QByteArrayView accessMagic("\0\1\0\0Standard ", 13);
constexpr qsizetype pageSizeAt = 16;
constexpr qsizetype writeVersionAt = 18;
constexpr qsizetype readVersionAt = 19;
constexpr qsizetype changeCounterAt = 24;
constexpr qsizetype pageCountAt = 28;
constexpr qsizetype userVersionAt = 60;
constexpr qsizetype applicationIdAt = 68;
constexpr qsizetype pageCountValidForAt = 92;
constexpr uchar writeAhead = 2;
constexpr qint64 largestPage = 65536; // does not fit into its two bytes, which then hold 1

constexpr int maximumLinks = 40; // as many as the system follows

} // namespace

DatabaseFile::DatabaseFile(const QString &path)
    : m_file(resolvedPath(path))
{
    // Opening a named pipe would wait for a program that writes into it.
    if (QFileInfo(m_file).isFile())
        m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

QString DatabaseFile::resolvedPath(const QString &path)
{
    // QFileInfo::canonicalFilePath() returns nothing for a link that leads nowhere, and the link
    // for one into a folder that may not be searched.
    std::filesystem::path file = path.toStdString();
    std::error_code error;
    for (int i = 0; i < maximumLinks; ++i) {
        const std::filesystem::path target = std::filesystem::read_symlink(file, error);
        if (error)
            break;
        file = file.parent_path() / target;
    }
    const QFileInfo own(QString::fromStdString(file.string()));
    const QString canonical = own.canonicalFilePath(); // resolves its folder, too
    return canonical.isEmpty() ? own.absoluteFilePath() : canonical;
}

// Returns at most `size` bytes, and none if the file cannot be read.
QByteArray DatabaseFile::start(qint64 size)
{
    return m_file.isOpen() && m_file.seek(0) ? m_file.read(size) : QByteArray();
}

bool DatabaseFile::isAccessFormat()
{
    return start(headerSize).startsWith(accessMagic);
}

std::optional<DatabaseHeader> DatabaseFile::header()
{
    const QByteArray bytes = start(headerSize);
    if (bytes.size() < headerSize || !bytes.startsWith(magic))
        return {};
    const auto number = [&bytes](qsizetype at) {
        return qFromBigEndian<quint32>(bytes.constData() + at);
    };

    DatabaseHeader header;
    header.pageSize = qFromBigEndian<quint16>(bytes.constData() + pageSizeAt);
    if (header.pageSize == 1)
        header.pageSize = largestPage;
    if (number(changeCounterAt) == number(pageCountValidForAt))
        header.pageCount = number(pageCountAt);
    header.userVersion = number(userVersionAt);
    header.applicationId = number(applicationIdAt);
    const auto writeVersion = static_cast<uchar>(bytes[writeVersionAt]);
    const auto readVersion = static_cast<uchar>(bytes[readVersionAt]);
    header.isOfLaterFormat = writeVersion > writeAhead || readVersion > writeAhead;
    header.isWriteAhead = readVersion == writeAhead;
    return header;
}

bool DatabaseFile::isCut()
{
    const std::optional<DatabaseHeader> stated = header();
    // Pages that are missing at the end may still be in the write-ahead log.
    return stated && stated->pageCount && size() < *stated->pageCount * stated->pageSize
        && !(stated->isWriteAhead && QFileInfo(path() + "-wal"_L1).size() > 0);
}
