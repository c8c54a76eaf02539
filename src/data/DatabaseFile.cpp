#include "data/DatabaseFile.h"

#include <QFileInfo>
#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace {

// https://www.sqlite.org/fileformat.html, "The Database Header"
constexpr qsizetype headerSize = 100;
constexpr QByteArrayView magic("SQLite format 3\0", 16);
constexpr qsizetype pageSizeAt = 16;
constexpr qsizetype readVersionAt = 19;
constexpr qsizetype changeCounterAt = 24;
constexpr qsizetype pageCountAt = 28;
constexpr qsizetype userVersionAt = 60;
constexpr qsizetype applicationIdAt = 68;
constexpr qsizetype pageCountValidForAt = 92;
constexpr char writeAhead = 2;
constexpr qint64 largestPage = 65536; // does not fit into its two bytes, which then hold 1

constexpr int maximumLinks = 40; // as many as the system follows

bool hasBytes(const QString &path)
{
    return QFileInfo(path).size() > 0;
}

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
    QFileInfo file(path);
    if (const QString canonical = file.canonicalFilePath(); !canonical.isEmpty())
        return canonical;
    for (int i = 0; i < maximumLinks && file.isSymLink(); ++i)
        file.setFile(file.symLinkTarget());
    return file.absoluteFilePath();
}

std::optional<DatabaseHeader> DatabaseFile::header()
{
    if (!m_file.isOpen() || !m_file.seek(0))
        return {};
    const QByteArray bytes = m_file.read(headerSize);
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
    header.isWriteAhead = bytes[readVersionAt] == writeAhead;
    return header;
}

bool DatabaseFile::isCut()
{
    const std::optional<DatabaseHeader> stated = header();
    // Pages that are missing at the end may still be in the write-ahead log.
    return stated && stated->pageCount && size() < *stated->pageCount * stated->pageSize
        && !(stated->isWriteAhead && hasWriteAheadLog());
}

bool DatabaseFile::hasRollbackJournal() const
{
    return hasBytes(path() + "-journal"_L1);
}

bool DatabaseFile::hasWriteAheadLog() const
{
    return hasBytes(path() + "-wal"_L1);
}
