#pragma once

#include <QString>

#include <stdexcept>

// The base of what this program throws: a complete text for the user, which names what failed and
// says what to do.
class UserVisibleError : public std::runtime_error
{
public:
    explicit UserVisibleError(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }

    QString text() const { return QString::fromUtf8(what()); }
};
