#include "data/Database.h"

#include "data/DatabaseError.h"
#include "data/TextComparison.h"

#include <QFileInfo>
#include <QHash>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <thread>

namespace {

int collate(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return compareTexts({static_cast<const char *>(left), static_cast<std::size_t>(leftSize)},
                        {static_cast<const char *>(right), static_cast<std::size_t>(rightSize)});
}

void countChange(void *changes, int, const char *, const char *table, sqlite3_int64)
{
    const int number = tableNumber(table);
    if (number >= 0)
        ++(*static_cast<TableChanges *>(changes))[static_cast<std::size_t>(number)];
}

// SQLITE_IGNORE makes SQLite delete row by row, so that the update hook counts each row even when a
// whole table is emptied.
int deleteRowByRow(void *, int action, const char *, const char *, const char *, const char *)
{
    return action == SQLITE_DELETE ? SQLITE_IGNORE : SQLITE_OK;
}

std::string selectOfFields(const Table &table)
{
    std::string fields;
    for (const Field &field : table.fields)
        fields +=
            (fields.empty() ? "" : ", ") + std::string(table.name) + "." + std::string(field.name);
    return "SELECT " + fields + " FROM " + std::string(table.name);
}

constexpr std::string_view whitespace = " \t\r\n";

std::string_view withoutLeadingWhitespace(std::string_view text)
{
    const std::size_t start = text.find_first_not_of(whitespace);
    return start == std::string_view::npos ? std::string_view{} : text.substr(start);
}

// "DELETE table.* From table" without its column list; any other statement unchanged.
std::string withoutColumnList(const std::string &statement)
{
    constexpr std::string_view verb = "DELETE";
    const std::string_view start = withoutLeadingWhitespace(statement);
    if (start.size() <= verb.size() || !isSameName(start.substr(0, verb.size()), verb)
        || whitespace.find(start[verb.size()]) == std::string_view::npos)
        return statement;

    const std::string_view columns = withoutLeadingWhitespace(start.substr(verb.size()));
    const std::string_view word = columns.substr(0, columns.find_first_of(whitespace));
    if (!word.ends_with(".*") || word.find_first_of("'\"") != std::string_view::npos)
        return statement;
    return std::string(verb) + std::string(columns.substr(word.size()));
}

} // namespace

std::shared_ptr<Database> Database::open(const QString &path, std::chrono::milliseconds lockTimeout)
{
    static QHash<QString, std::weak_ptr<Database>> connections;
    std::weak_ptr<Database> &known = connections[QFileInfo(path).absoluteFilePath()];
    std::shared_ptr<Database> database = known.lock();
    if (!database) {
        database = std::shared_ptr<Database>(new Database(path, lockTimeout));
        known = database;
    }
    return database;
}

Database::Database(const QString &path, std::chrono::milliseconds lockTimeout)
    : m_path(path)
    , m_lockTimeout(lockTimeout)
{
    translateSqliteErrors([this] {
        // One thread uses the connection, so that SQLite need not protect it by a mutex.
        m_connection = std::make_unique<SQLite::Database>(
            m_path.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX);
        configure();
        checkFile();
        leaveWalMode();
        m_dataVersion = std::make_unique<SQLite::Statement>(*m_connection, "PRAGMA data_version");
    });
}

Database::~Database() = default;

void Database::configure()
{
    sqlite3 *handle = m_connection->getHandle();
    sqlite3_busy_handler(handle, waitForLock, this);
    sqlite3_create_collation_v2(handle, "NOCASE", SQLITE_UTF8, nullptr, collate, nullptr);
    sqlite3_update_hook(handle, countChange, &m_changes);
    sqlite3_set_authorizer(handle, deleteRowByRow, nullptr);
    m_connection->exec("PRAGMA synchronous = FULL; PRAGMA cache_size = -16000");
}

// sqlite3_busy_timeout() waits longer after each attempt, so that of several busy programs one can
// starve. Here the pauses become shorter, so that the program that has waited longest is the most
// likely to get the lock.
int Database::waitForLock(void *database, int attempt)
{
    using namespace std::chrono;
    auto &self = *static_cast<Database *>(database);
    if (attempt == 0)
        self.m_waitingSince = steady_clock::now();
    const auto waited = steady_clock::now() - self.m_waitingSince;
    if (waited >= self.m_lockTimeout)
        return 0;
    const auto halvings = std::min<std::int64_t>(waited / milliseconds(200), 5);
    std::this_thread::sleep_for(microseconds(4000 >> halvings));
    return 1;
}

// Reads the file's first page and prepares a statement for each table. Together they find a file
// that is damaged, incomplete or not a recipe database.
void Database::checkFile()
{
    m_connection->execAndGet("PRAGMA schema_version");
    if (m_connection->execAndGet("PRAGMA application_id").getInt() == applicationId
        && m_connection->execAndGet("PRAGMA user_version").getInt() > schemaVersion)
        throw DatabaseError::newerVersion(m_path);
    for (const Table &table : schemaTables())
        SQLite::Statement(*m_connection, selectOfFields(table));
}

// In the write-ahead mode, which another tool can have set, the newest rows are in a second file
// that a copy made by hand would miss. If the mode cannot be left now, the program works in it.
void Database::leaveWalMode()
{
    if (m_connection->execAndGet("PRAGMA journal_mode").getString() == "wal")
        m_connection->tryExec("PRAGMA journal_mode = DELETE");
}

void Database::Execute(const QString &statement)
{
    refuseAfterFailure();
    translateSqliteErrors([&] { m_connection->exec(withoutColumnList(statement.toStdString())); });
}

int Database::dataVersion()
{
    return translateSqliteErrors([this] {
        m_dataVersion->tryReset();
        m_dataVersion->executeStep();
        const int version = m_dataVersion->getColumn(0).getInt();
        m_dataVersion->tryReset();
        return version;
    });
}

void Database::enlist(TransactionParticipant &participant)
{
    refuseAfterFailure();
    if (m_depth > 0
        && std::find(m_participants.begin(), m_participants.end(), &participant)
            == m_participants.end())
        m_participants.push_back(&participant);
}

void Database::delist(TransactionParticipant &participant)
{
    std::erase(m_participants, &participant);
}

void Database::notifyParticipants()
{
    // Any other cursor may have read rows that are now rolled back. Counting a change of each table
    // makes its next requery read again.
    for (quint64 &changes : m_changes)
        ++changes;
    for (TransactionParticipant *participant : m_participants)
        participant->transactionRolledBack();
}

void Database::rethrow()
{
    try {
        throw;
    } catch (const SQLite::Exception &error) {
        fail(error.getExtendedErrorCode(), error.what());
    }
}

void Database::fail(int code, const char *message)
{
    const DatabaseError error = DatabaseError::fromSqlite(m_path, code, QString::fromUtf8(message));
    if (m_state != TransactionState::None)
        m_failure = error.text();
    if (m_state == TransactionState::Open)
        m_state = TransactionState::StepFailed;
    // A full disk, for example, makes SQLite roll back the whole transaction.
    if (m_state == TransactionState::StepFailed
        && sqlite3_get_autocommit(m_connection->getHandle()) != 0) {
        m_state = TransactionState::RolledBack;
        notifyParticipants();
    }
    throw error;
}

// What is written after a failed step would be committed without what should have preceded it.
void Database::refuseAfterFailure() const
{
    if (m_state == TransactionState::StepFailed || m_state == TransactionState::RolledBack)
        throw DatabaseError(m_failure);
}

void Database::begin()
{
    refuseAfterFailure();
    translateSqliteErrors(
        [this] { m_connection->exec(m_depth == 0 ? "BEGIN IMMEDIATE" : "SAVEPOINT inner"); });
    ++m_depth;
    m_state = TransactionState::Open;
}

void Database::commit()
{
    refuseAfterFailure();
    translateSqliteErrors(
        [this] { m_connection->exec(m_depth == 1 ? "COMMIT" : "RELEASE inner"); });
    end();
}

void Database::rollBack() noexcept
{
    if (m_state != TransactionState::RolledBack) {
        // A rollback fails only if SQLite has already rolled back by itself.
        m_connection->tryExec(m_depth == 1 ? "ROLLBACK" : "ROLLBACK TO inner; RELEASE inner");
        notifyParticipants();
        m_state = TransactionState::Open;
    }
    end();
}

void Database::end()
{
    if (--m_depth > 0)
        return;
    m_state = TransactionState::None;
    m_participants.clear();
}

Transaction::Transaction(Database &database)
    : m_database(database)
{
    m_database.begin();
}

Transaction::~Transaction()
{
    if (!m_committed)
        m_database.rollBack();
}

void Transaction::commit()
{
    m_database.commit();
    m_committed = true;
}

ReadTransaction::ReadTransaction(Database &database)
    : m_database(database)
    , m_outermost(database.m_depth == 0
                  && sqlite3_get_autocommit(database.connection().getHandle()) != 0)
{
    if (m_outermost)
        m_database.translateSqliteErrors([this] { m_database.connection().exec("BEGIN"); });
}

ReadTransaction::~ReadTransaction()
{
    if (!m_outermost)
        return;
    // The commit of a transaction that has written can fail, and its result is ignored here.
    Q_ASSERT(sqlite3_txn_state(m_database.connection().getHandle(), nullptr) != SQLITE_TXN_WRITE);
    m_database.connection().tryExec("COMMIT");
}
