#include "data/Database.h"

#include "data/ActionStatement.h"
#include "data/DatabaseError.h"
#include "data/DatabaseErrorText.h"
#include "data/TextComparison.h"
#include "data/Transaction.h"
#include "data/TranslateSqliteErrors.h"

#include <QFileInfo>
#include <QHash>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

// The engine's own waiting grows its pauses and lets one of two busy programs starve; short even
// pauses make them take turns.
int waitForLock(void *since, int attempt)
{
    using namespace std::chrono;
    constexpr auto longest = seconds(10);
    constexpr auto pause = milliseconds(2);
    auto &start = *static_cast<steady_clock::time_point *>(since);
    if (attempt == 0)
        start = steady_clock::now();
    if (steady_clock::now() - start >= longest)
        return 0;
    std::this_thread::sleep_for(pause);
    return 1;
}

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

// Rows are deleted one by one, so that each is counted, also where a whole table is emptied.
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

} // namespace

std::shared_ptr<Database> Database::open(const QString &path)
{
    static QHash<QString, std::weak_ptr<Database>> connections;
    std::weak_ptr<Database> &known = connections[QFileInfo(path).absoluteFilePath()];
    std::shared_ptr<Database> database = known.lock();
    if (!database) {
        database = std::shared_ptr<Database>(new Database(path));
        known = database;
    }
    return database;
}

Database::Database(const QString &path)
    : m_path(path)
{
    translateSqliteErrors(*this, [this] {
        // Cursors and transactions belong to one thread anyway, so the engine need not lock.
        m_connection = std::make_unique<SQLite::Database>(
            m_path.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX);
        configure();
        checkFile();
        useOneFile();
        m_dataVersion = std::make_unique<SQLite::Statement>(*m_connection, "PRAGMA data_version");
    });
}

Database::~Database() = default;

void Database::configure()
{
    sqlite3 *handle = m_connection->getHandle();
    static std::chrono::steady_clock::time_point waitingSince;
    sqlite3_busy_handler(handle, waitForLock, &waitingSince);
    sqlite3_create_collation_v2(handle, "NOCASE", SQLITE_UTF8, nullptr, collate, nullptr);
    sqlite3_update_hook(handle, countChange, &m_changes);
    sqlite3_set_authorizer(handle, deleteRowByRow, nullptr);
    m_connection->exec("PRAGMA synchronous = FULL; PRAGMA cache_size = -16000");
}

// Reads the file's first page and prepares a statement for each table, which together find a file
// that is damaged, incomplete or something else.
void Database::checkFile()
{
    m_connection->execAndGet("PRAGMA schema_version");
    if (m_connection->execAndGet("PRAGMA application_id").getInt() == applicationId
        && m_connection->execAndGet("PRAGMA user_version").getInt() > schemaVersion)
        throw DatabaseError(newerVersionText(m_path));
    for (const Table &table : schemaTables())
        SQLite::Statement(*m_connection, selectOfFields(table));
}

// A file that another tool has set to a write-ahead log would keep its newest rows in a second
// file, which a copy made by hand leaves behind. Where that cannot be undone now, the log works as
// well.
void Database::useOneFile()
{
    if (m_connection->execAndGet("PRAGMA journal_mode").getString() == "wal")
        m_connection->tryExec("PRAGMA journal_mode = DELETE");
}

void Database::Execute(const QString &statement)
{
    refuseAfterFailure();
    translateSqliteErrors(
        *this, [&] { m_connection->exec(translatedStatement(statement.toStdString())); });
}

int Database::dataVersion()
{
    return translateSqliteErrors(*this, [this] {
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

void Database::tellParticipants()
{
    // What others have read inside the transaction has not come about either.
    for (quint64 &changes : m_changes)
        ++changes;
    for (TransactionParticipant *participant : m_participants)
        participant->transactionRolledBack();
}

void Database::fail(int code, const char *message)
{
    const QString text = databaseErrorText(m_path, code, QString::fromUtf8(message));
    if (m_depth > 0)
        m_failure = text;
    // A full disk and the like make the engine undo the whole transaction by itself.
    if (m_depth > 0 && !m_undoneByEngine
        && sqlite3_get_autocommit(m_connection->getHandle()) != 0) {
        m_undoneByEngine = true;
        tellParticipants();
    }
    throw DatabaseError(text);
}

// What is written behind a failure would be stored without what should have come before it.
void Database::refuseAfterFailure() const
{
    if (!m_failure.isEmpty())
        throw DatabaseError(m_failure);
}

void Database::begin()
{
    refuseAfterFailure();
    translateSqliteErrors(*this, [this] {
        m_connection->exec(m_depth == 0 ? "BEGIN IMMEDIATE" : "SAVEPOINT inner");
    });
    ++m_depth;
}

void Database::commit()
{
    refuseAfterFailure();
    translateSqliteErrors(
        *this, [this] { m_connection->exec(m_depth == 1 ? "COMMIT" : "RELEASE inner"); });
    if (--m_depth == 0)
        m_participants.clear();
}

void Database::rollBack() noexcept
{
    if (!m_undoneByEngine) {
        // Not even a failing rollback leaves anything to do: the engine then has undone it all.
        m_connection->tryExec(m_depth == 1 ? "ROLLBACK" : "ROLLBACK TO inner; RELEASE inner");
        tellParticipants();
        m_failure.clear();
    }
    if (--m_depth == 0) {
        m_participants.clear();
        m_undoneByEngine = false;
        m_failure.clear();
    }
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
        translateSqliteErrors(m_database, [this] { m_database.connection().exec("BEGIN"); });
}

ReadTransaction::~ReadTransaction()
{
    if (!m_outermost)
        return;
    // A commit that writes can fail, which nobody would notice here.
    Q_ASSERT(sqlite3_txn_state(m_database.connection().getHandle(), nullptr) != SQLITE_TXN_WRITE);
    m_database.connection().tryExec("COMMIT");
}
