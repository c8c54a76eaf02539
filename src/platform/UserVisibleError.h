#pragma once

#include <QString>

#include <stdexcept>

namespace platform {

// The base class of the program's exceptions. Its text is for the user: complete sentences that say
// what failed and what to do.
class UserVisibleError : public std::runtime_error
{
public:
    explicit UserVisibleError(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }

    QString text() const { return QString::fromUtf8(what()); }
};

} // namespace platform
