#pragma once

#include "data/Schema.h"

#include <QString>

#include <array>
#include <memory>
#include <vector>

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

// Told when a transaction in which it wrote is undone.
class TransactionParticipant
{
public:
    virtual void transactionRolledBack() = 0;

protected:
    ~TransactionParticipant() = default;
};

// How many changes of rows this program has made in each table, by the tables' numbers.
using TableChanges = std::array<quint64, tableCount>;

// The program's one connection to a recipe file. Failures are thrown as DatabaseError.
class Database
{
public:
    // The connection to the file at `path`: the one that is open, or else a new one. Opens for
    // reading and writing and never creates the file, nor changes one that it refuses; throws where
    // the file is missing, damaged, made by a newer program or no recipe file.
    static std::shared_ptr<Database> open(const QString &path);

    ~Database();

    // Runs one action statement at once; cursors show its effect after their next requery.
    void Execute(const QString &statement);

    const TableChanges &changes() const { return m_changes; }

    // A number that has become another one where another program has changed the file.
    int dataVersion();

    // To be called before each change: the participant is told of rollbacks from now until the
    // outermost transaction ends. Throws where a step of the open transaction has failed, since it
    // can only be undone then.
    void enlist(TransactionParticipant &participant);
    void delist(TransactionParticipant &participant);

    // For what runs statements of its own; see Guarded.h for its failures.
    SQLite::Database &connection() { return *m_connection; }

    // Throws what SQLite has just reported with this extended result code. To be called before
    // anything else is done with the connection.
    [[noreturn]] void fail(int code, const char *message);

private:
    friend class Transaction;
    friend class ReadTransaction;

    explicit Database(const QString &path);
    Q_DISABLE_COPY_MOVE(Database)

    void configure();
    void checkFile();
    void useOneFile();

    void begin();
    void commit();
    void rollBack() noexcept;
    void tellParticipants();
    void refuseAfterFailure() const;

    const QString m_path;
    std::unique_ptr<SQLite::Database> m_connection;
    std::unique_ptr<SQLite::Statement> m_dataVersion;
    TableChanges m_changes{};
    std::vector<TransactionParticipant *> m_participants;
    int m_depth = 0; // of transactions that lie in each other
    bool m_undoneByEngine = false; // as a whole, before its scopes have ended
    QString m_failure; // of a step in the open transaction, until that step has been undone
};
