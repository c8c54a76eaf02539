#pragma once

#include "platform/UserVisibleError.h"

#include <QCoreApplication>

#include <exception>

// Thrown by the data layer.
class DatabaseError : public platform::UserVisibleError
{
public:
    using UserVisibleError::UserVisibleError;

    enum class Operation { Reading, Writing };

    // A failure with the recipe database at `path`, with a text that says what is wrong and what to
    // do. `code` is an extended result code of SQLite and `message` its own text. The result holds
    // a DatabaseError, or an UnusableDatabase if that is what the code means.
    static std::exception_ptr fromSqlite(const QString &path, int code, const QString &message,
                                         Operation operation);

    // The file at `path` has a schema of a later version.
    static DatabaseError newerVersion(const QString &path);

    // The sentence that the texts of failed writes contain, after a space. Work of which a part has
    // been stored removes it.
    static QString nothingStored();

    // A row of `table` has the largest possible key, so that no row can be added.
    static std::exception_ptr keysUsedUp(const QString &path, const QString &table);
};

// The recipe database is missing, empty, cut, damaged or another kind of file: a copy of it that is
// put in its place would help.
class UnusableDatabase : public DatabaseError
{
public:
    // `problem` says what is wrong in complete sentences, and `advice` what to do. text() is both.
    UnusableDatabase(const QString &path, const QString &problem,
                     const QString &advice = usualAdvice());

    // The content of the file at `path` contradicts itself or ends too early.
    static UnusableDatabase damaged(const QString &path, Operation operation);

    // The file at `path` is a database of the Access format.
    static UnusableDatabase accessFormat(const QString &path);

    QString path() const { return m_path; }
    QString problem() const { return m_problem; }

private:
    static QString usualAdvice();

    QString m_path;
    QString m_problem;
};

// The row to be read, changed or deleted no longer exists.
class RowNotFound final : public DatabaseError
{
    Q_DECLARE_TR_FUNCTIONS(RowNotFound)

public:
    explicit RowNotFound(Operation operation = Operation::Writing)
        : DatabaseError(operation == Operation::Writing
                            ? tr("This entry has been deleted by another program. Nothing was "
                                 "stored.")
                            : tr("This entry has been deleted by another program. Press F5 to show "
                                 "the entries that are left."))
    {
    }
};
