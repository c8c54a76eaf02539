#pragma once

#include "data/Database.h"

#include <QElapsedTimer>

#include <optional>

// The transaction that the files of a batch share, because a commit costs far more than a file. It
// lasts about 200 ms; between two of them other programs can use the database.
class GroupCommit
{
public:
    void startBatch() { m_isBatch = true; }
    void endBatch(); // rolls back what has not been committed
    bool isBatch() const { return m_isBatch; }

    // To be called before each file: begins a transaction if none is open. Returns whether it has
    // begun one. Throws DatabaseError.
    bool begin(Database &database);

    // To be asked after each file: whether the transaction should be committed now. Outside a batch
    // that is after every file.
    bool isDue() const;

    // Does nothing if no transaction is open. Throws DatabaseError; the transaction has then been
    // rolled back.
    void commit();
    void rollBack() { m_transaction.reset(); }

    // Gives a program that waits for the database the time to take it. To be called in a batch
    // after a commit if the next transaction begins at once.
    void letOthersIn() const;

private:
    std::optional<Transaction> m_transaction;
    QElapsedTimer m_sinceBegin;
    bool m_isBatch = false;
};
