#pragma once

#include <QFile>
#include <QString>

#include <optional>

// What the first 100 bytes of an SQLite file say.
struct DatabaseHeader {
    qint64 pageSize = 0; // in bytes
    std::optional<qint64> pageCount; // none if the program that wrote last did not maintain it
    quint32 userVersion = 0;
    quint32 applicationId = 0;
    bool isWriteAhead = false; // the newest rows may be in another file
    bool isOfLaterFormat = false; // which the installed SQLite can read at best
};

// The bytes of a recipe database, read without SQLite. If any descriptor of a file is closed, the
// system releases all locks that the process holds on that file, also those of SQLite. So the file
// stays open from before the connection is opened until after it is closed, and nothing else in the
// program may open it while a connection is open.
class DatabaseFile
{
public:
    // Opens the file for reading. If that fails, there is no header and the size is 0.
    explicit DatabaseFile(const QString &path);

    // The file's own path: all symbolic links are resolved, also those that lead nowhere. Journals
    // and copies are beside the file, not beside a link to it.
    static QString resolvedPath(const QString &path);
    QString path() const { return m_file.fileName(); }

    // Read from the file at each call. None if it does not begin as an SQLite file does.
    std::optional<DatabaseHeader> header();

    // Whether the file begins as one of the Access format does.
    bool isAccessFormat();

    qint64 size() const { return m_file.size(); }

    // Whether the file is shorter than its header states. To be called in a read transaction:
    // another program may be lengthening the file otherwise, and a journal may have to restore it.
    bool isCut();

    // The descriptor, for copying the file; -1 if the file could not be opened.
    int handle() const { return m_file.handle(); }

private:
    QByteArray start(qint64 size);

    QFile m_file;
};
