#pragma once

#include "data/Database.h"

#include <QElapsedTimer>

#include <optional>

// Puts the files of a batch into common transactions of about 200 ms, since a commit costs far more
// than a file. Between two of them other programs get their turn.
class GroupCommit
{
public:
    // From now on files share transactions, until the batch ends.
    void startBatch() { m_isBatch = true; }
    void endBatch();
    bool isBatch() const { return m_isBatch; }

    // In front of each file that is stored.
    void begin(Database &database);

    // Behind each file: commits, in a batch only when the group has lasted its time.
    void fileStored();

    // Behind a file that could not be stored and has left nothing: commits those before it.
    void fileFailed();

    // Commits what has been stored; before anything waits for the user.
    void commit();

private:
    std::optional<Transaction> m_transaction;
    QElapsedTimer m_sinceBegin;
    bool m_isBatch = false;
    bool m_holdsFiles = false;
};
