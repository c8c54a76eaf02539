#pragma once

#include <QtGlobal>

class Database;

// Changes that happen whole or not at all: what has not been committed when the scope is left is
// undone. Scopes nest; the changes of an inner one stand for good when the outermost has committed.
class Transaction
{
public:
    explicit Transaction(Database &database);
    ~Transaction();

    void commit();

private:
    Q_DISABLE_COPY_MOVE(Transaction)

    Database &m_database;
    bool m_committed = false;
};

// A scope in which all reading sees one state of the file and asks only once whether another
// program has changed it. Nothing may be written inside.
class ReadTransaction
{
public:
    explicit ReadTransaction(Database &database);
    ~ReadTransaction();

private:
    Q_DISABLE_COPY_MOVE(ReadTransaction)

    Database &m_database;
    const bool m_outermost;
};
