#pragma once

#include <QString>

#include <exception>
#include <stdexcept>

namespace oldfiles {

// Why a file cannot be read. Its text is for the user: complete sentences that name the table, the
// column or the page, which can be passed on to somebody who knows the file.
class Error : public std::runtime_error
{
public:
    explicit Error(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }

    QString text() const { return QString::fromUtf8(what()); }
};

// A pointer, length or count of the file that cannot be right. It never leaves the folder: whoever
// knows the table and the page turns it into an Error or counts the row as unreadable.
class Damage : public std::exception
{
};

// Throws Damage if the file does not say what it must.
inline void require(bool condition)
{
    if (!condition)
        throw Damage();
}

} // namespace oldfiles
