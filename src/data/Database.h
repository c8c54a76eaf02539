#pragma once

#include "data/DailyCopy.h"
#include "data/DatabaseError.h"
#include "data/DatabaseSession.h"
#include "data/Schema.h"

#include <QString>

#include <array>
#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

// Notified when a transaction in which it has written is rolled back.
class TransactionParticipant
{
public:
    virtual void transactionRolledBack() = 0;

protected:
    ~TransactionParticipant() = default;
};

// A change that this program is about to make to the rows of a table.
struct TableChange {
    std::size_t table; // its number
    bool isInsertion = false;
    std::optional<qint64> rowid = {}; // of the only row that is updated or deleted; else nothing
};

// Notified before this program changes a table.
class ChangeObserver
{
public:
    // Called in the transaction of the change. May read; if it throws, the change is not made.
    virtual void aboutToChange(const TableChange &change) = 0;

protected:
    ~ChangeObserver() = default;
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

    // To be called after another file has been put in the place of the one at `path`: if that is
    // open, it is opened again in the same object, and all its cursors read the new file from their
    // next requery on; those that have not read all their rows, from now on. Throws as open() does,
    // and the object then keeps the old file. Must not be called inside a transaction.
    static void reopen(const QString &path);

    // Returns the number of recipes in the file at `path`, or nothing if open() would reject it or
    // the check before the first write would. Reads the whole file.
    static std::optional<qint64> countRecipesIfSound(const QString &path);

    // DailyCopy::takeFailure() of the connection to the file at `path`, if it is open. To be called
    // outside of transactions, when the user can be told.
    static QString takeCopyFailure(const QString &path);

    ~Database();

    // Runs one action statement, whose text names each table that it changes; all tables that it
    // names count as changed. Its effect shows in a cursor after the cursor's next requery. SQLite
    // has no column list in DELETE; "DELETE table.* From table" is accepted all the same.
    void Execute(const QString &statement);

    // 1, and one more after each reopen(). The keys of another file may be those of other rows.
    int fileNumber() const { return static_cast<int>(m_retired.size()) + 1; }

    const TableChanges &changes() const { return m_changes; }

    // A number that differs from the last one returned if another program has changed the file.
    int dataVersion();

    // SQLite's schema version: a number that differs from the last one returned if another program
    // has changed the schema. Throws if the tables are no longer such that the program reads and
    // writes them correctly, see SchemaCheck.h.
    int schemaCookie();

    // To be called before each change: from now until the outermost transaction ends, the
    // participant is notified of rollbacks. Throws if a step of the transaction has failed.
    void enlist(TransactionParticipant &participant);
    void delist(TransactionParticipant &participant);

    // An observer is notified until it is removed.
    void addObserver(ChangeObserver &observer);
    void removeObserver(ChangeObserver &observer);

    // Notifies all observers but `author`, through which the change is made. To be called before
    // each change, inside its transaction. Throws what an observer throws.
    void announce(const TableChange &change, const ChangeObserver *author = nullptr);

    // Runs an action that writes: inside the transaction that is open, or else inside its own one.
    // Throws what the action throws, and DatabaseError.
    void write(const std::function<void()> &action);

    // For code that runs its own statements, inside translateSqliteErrors(). A statement is of no
    // use after reopen(), when this is another object; the statement may still be destroyed.
    SQLite::Database &connection() { return m_session.connection(); }

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
        Beginning, // the outermost one is waiting for its lock or checking the file
        Open, // all its steps have worked
        StepFailed, // it refuses writes and commits until the step's transaction is rolled back
        RolledBack, // by SQLite itself; it refuses writes until the outermost transaction ends
    };

    Database(const QString &path, std::chrono::milliseconds lockTimeout);
    Q_DISABLE_COPY_MOVE(Database)

    static std::weak_ptr<Database> &knownDatabase(const QString &path);
    DatabaseSession connect();
    static int waitForLock(void *database, int attempt);
    [[noreturn]] void rethrow();

    void begin();
    void beginOutermost();
    void prepareWrite();
    void requireSound();
    void commit();
    void rollBack() noexcept;
    void end();
    void announceChangesBy(const std::string &statement);
    void notifyParticipants();
    void countChangeOfAllTables();
    void restoreFromJournal();
    void refuseAfterFailure() const;

    const QString m_path;
    const std::chrono::milliseconds m_lockTimeout;
    std::chrono::steady_clock::time_point m_waitingSince;
    TableChanges m_changes{};

    TransactionState m_state = TransactionState::None;
    int m_depth = 0; // of nested transactions
    std::exception_ptr m_failure; // of the step that failed
    std::vector<TransactionParticipant *> m_participants;
    std::vector<ChangeObserver *> m_observers;

    DailyCopy m_dailyCopy;

    // Statements of cursors refer to the retired sessions until the cursors read again.
    std::vector<DatabaseSession> m_retired;
    DatabaseSession m_session;
    bool m_isSound = false; // as the check before the first write has found
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
