#pragma once

#include <QCoreApplication>
#include <QString>

#include <stdexcept>

// What the data layer throws: a text for the user that names the thing and what to do.
class DatabaseError : public std::runtime_error
{
public:
    explicit DatabaseError(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }

    QString text() const { return QString::fromUtf8(what()); }
};

// The row that was to be changed or deleted is not there any more.
class RowNotFound final : public DatabaseError
{
public:
    RowNotFound()
        : DatabaseError(QCoreApplication::translate(
            "RowNotFound", "This entry has been deleted by another program. Nothing was stored."))
    {
    }
};
