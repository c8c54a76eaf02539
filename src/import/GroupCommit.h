#pragma once

#include "data/Database.h"

#include <QElapsedTimer>

#include <optional>

// Stores the files of a batch in shared transactions of about 200 ms each, because a commit costs
// far more than a file. Between two transactions other programs can use the database.
class GroupCommit
{
public:
    void startBatch() { m_isBatch = true; }
    void endBatch(); // commits
    bool isBatch() const { return m_isBatch; }

    // To be called before each file: begins a transaction if none is open.
    void begin(Database &database);

    // To be called after each file: commits, but within a batch only after about 200 ms.
    void fileStored();

    // To be called after a file that was undone: commits the files before it.
    void fileFailed();

    // Commits what has been stored. To be called before the user is asked anything, because the
    // database is locked until then.
    void commit();

private:
    std::optional<Transaction> m_transaction;
    QElapsedTimer m_sinceBegin;
    bool m_isBatch = false;
    bool m_holdsFiles = false;
};
