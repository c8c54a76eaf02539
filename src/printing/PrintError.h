#pragma once

#include <QString>

#include <stdexcept>

// Why nothing, or no more, is printed: a text for the user.
class PrintError final : public std::runtime_error
{
public:
    explicit PrintError(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
};
