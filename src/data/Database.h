#pragma once

#include "data/Schema.h"

#include <QString>

#include <array>
#include <chrono>
#include <memory>
#include <vector>

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

// Notified when a transaction in which it has written is rolled back.
class TransactionParticipant
{
public:
    virtual void transactionRolledBack() = 0;

protected:
    ~TransactionParticipant() = default;
};

// How many changes of rows this program has made in each table, by table number.
using TableChanges = std::array<quint64, tableCount>;

// The program's one connection to a recipe database. Failures are thrown as DatabaseError.
class Database
{
public:
    // How long a statement waits for another program to release its lock on the file.
    static constexpr std::chrono::milliseconds defaultLockTimeout{10'000};

    // The connection to the file at `path`. Returns the one that is open or opens one, for reading
    // and writing and with this timeout. Never creates the file, nor changes one that it rejects.
    // Throws if the file is missing or damaged, was made by a newer version of the program or is
    // not a recipe database.
    static std::shared_ptr<Database>
    open(const QString &path, std::chrono::milliseconds lockTimeout = defaultLockTimeout);

    ~Database();

    // Runs one action statement. Its effect shows in a cursor after the cursor's next requery.
    // SQLite has no column list in DELETE; "DELETE table.* From table" is accepted all the same.
    void Execute(const QString &statement);

    const TableChanges &changes() const { return m_changes; }

    // A number that differs from the last one returned if another program has changed the file.
    int dataVersion();

    // A number that differs from the last one returned if another program has changed the tables.
    // Throws if they are no longer such that the program can use them, see SchemaCheck.h.
    int schemaCookie();

    // To be called before each change: from now until the outermost transaction ends, the
    // participant is notified of rollbacks. Throws if a step of the transaction has failed.
    void enlist(TransactionParticipant &participant);
    void delist(TransactionParticipant &participant);

    // For code that runs its own statements, inside translateSqliteErrors().
    SQLite::Database &connection() { return *m_connection; }

    // Returns what `action` returns and throws a failure of SQLite as a DatabaseError.
    template <typename Action>
    decltype(auto) translateSqliteErrors(Action action)
    {
        try {
            return action();
        } catch (...) {
            rethrow();
        }
    }

    // Throws the failure that SQLite has just reported with this extended result code. To be called
    // before the connection is used again.
    [[noreturn]] void fail(int code, const char *message);

private:
    friend class Transaction;
    friend class ReadTransaction;

    // What has become of the transaction that is open.
    enum class TransactionState {
        None, // no transaction is open
        Open, // all its steps have worked
        StepFailed, // it refuses writes and commits until the step's transaction is rolled back
        RolledBack, // by SQLite itself; it refuses writes until the outermost transaction ends
    };

    Database(const QString &path, std::chrono::milliseconds lockTimeout);
    Q_DISABLE_COPY_MOVE(Database)

    void configure();
    void checkFile();
    void leaveWalMode();
    static int waitForLock(void *database, int attempt);
    [[noreturn]] void rethrow();

    void begin();
    void commit();
    void rollBack() noexcept;
    void end();
    void notifyParticipants();
    void refuseAfterFailure() const;

    const QString m_path;
    const std::chrono::milliseconds m_lockTimeout;
    std::chrono::steady_clock::time_point m_waitingSince;
    std::unique_ptr<SQLite::Database> m_connection;
    std::unique_ptr<SQLite::Statement> m_dataVersion;
    std::unique_ptr<SQLite::Statement> m_schemaCookie;
    int m_checkedCookie = 0; // the schema version that has passed the check
    TableChanges m_changes{};

    TransactionState m_state = TransactionState::None;
    int m_depth = 0; // of nested transactions
    QString m_failure; // text of the step that failed
    std::vector<TransactionParticipant *> m_participants;
};

// A scope whose changes happen completely or not at all: they are rolled back unless commit() is
// called before the scope ends. Scopes nest; the changes of an inner one are permanent when the
// outermost one has committed. The outermost one holds the write lock on the file. The constructor
// and commit() throw DatabaseError; if commit() throws, the scope is rolled back when it ends.
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

// A scope in which everything is read from one snapshot of the file, and SQLite checks only once
// whether another program has changed it. Nothing may be written inside. Has no effect inside
// another transaction. The constructor throws DatabaseError.
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
