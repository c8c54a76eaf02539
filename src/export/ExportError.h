#pragma once

#include <QString>

#include <stdexcept>

// Why no pages have been made: a text for the user that names the thing and what to do.
class ExportError : public std::runtime_error
{
public:
    explicit ExportError(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }

    QString text() const { return QString::fromUtf8(what()); }
};

// Where the pages should go lies something that no export has made.
class ForeignFolderError final : public ExportError
{
public:
    using ExportError::ExportError;
};
