#pragma once

#include <QString>

// A file that is being made. It is removed with this object unless keep() has been called.
class NewFile
{
public:
    // Creates it. Throws platform::UserVisibleError if that is not possible or the file exists.
    explicit NewFile(const QString &path);
    ~NewFile();

    const QString &path() const { return m_path; }

    // Waits until the disk has the file and its name. Throws platform::UserVisibleError. No
    // connection to it may be open, because this closes the file and thereby releases its locks.
    void keep();

private:
    Q_DISABLE_COPY_MOVE(NewFile)

    QString m_path;
    bool m_isKept = false;
};
