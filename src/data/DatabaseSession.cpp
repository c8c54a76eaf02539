#include "data/DatabaseSession.h"

#include "data/DatabaseError.h"
#include "data/DatabaseFile.h"
#include "data/Schema.h"
#include "data/SchemaCheck.h"
#include "data/TextComparison.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <algorithm>
#include <span>
#include <string>
#include <utility>

namespace {

int collate(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return compareTexts({static_cast<const char *>(left), static_cast<std::size_t>(leftSize)},
                        {static_cast<const char *>(right), static_cast<std::size_t>(rightSize)});
}

int numberOf(SQLite::Statement &statement)
{
    statement.tryReset();
    statement.executeStep();
    const int number = statement.getColumn(0).getInt();
    statement.tryReset();
    return number;
}

void run(SQLite::Statement &statement)
{
    statement.tryReset();
    statement.exec();
}

void writeLogOnClose(SQLite::Database &connection, bool writes)
{
    sqlite3_db_config(connection.getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, writes ? 0 : 1,
                      nullptr);
}

// Rejects what the file's first bytes show. SQLite may change a file as soon as it reads it, for
// example by restoring it from a journal.
void checkHeader(DatabaseFile &file, const QString &path)
{
    if (file.isAccessFormat())
        throw UnusableDatabase::accessFormat(path);
    const std::optional<DatabaseHeader> header = file.header();
    if (header && header->applicationId == applicationId && header->userVersion > schemaVersion)
        throw DatabaseError::newerVersion(path);
    // SQLite would open the file as if it were read-only.
    if (header && header->isOfLaterFormat)
        throw UnusableDatabase::damaged(path, DatabaseError::Operation::Reading);
}

} // namespace

void configureSqlite()
{
    static bool isConfigured = false;
    if (std::exchange(isConfigured, true))
        return;
    // A nested transaction keeps copies of the pages that it changes. By default SQLite moves more
    // than 64 KiB of them to a temporary file, as those of a recipe with many lines are.
    constexpr int copiesInMemory = 1 << 20; // in bytes
    constexpr int withoutStatistics = 0;
    // If SQLite has been used before, it returns SQLITE_MISUSE and stays slower.
    sqlite3_config(SQLITE_CONFIG_STMTJRNL_SPILL, copiesInMemory);
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, withoutStatistics);
}

DatabaseSession::DatabaseSession(const QString &path,
                                 const std::function<void(sqlite3 *)> &configure)
    : m_path(path)
    , m_file(std::make_unique<DatabaseFile>(path))
{
    checkHeader(*m_file, m_path);
    configureSqlite();
    try {
        // One thread uses the connection, so that SQLite need not protect it by a mutex.
        m_connection = std::make_unique<SQLite::Database>(
            m_path.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX);
        configure(m_connection->getHandle());
        this->configure();
        checkFile();
        leaveWalMode();
        m_dataVersion = std::make_unique<SQLite::Statement>(*m_connection, "PRAGMA data_version");
        m_schemaCookie =
            std::make_unique<SQLite::Statement>(*m_connection, "PRAGMA schema_version");
        m_beginNested = std::make_unique<SQLite::Statement>(*m_connection, "SAVEPOINT nested");
        m_commitNested = std::make_unique<SQLite::Statement>(*m_connection, "RELEASE nested");
    } catch (const SQLite::Exception &error) {
        std::rethrow_exception(DatabaseError::fromSqlite(m_path, error.getExtendedErrorCode(),
                                                         QString::fromUtf8(error.what()),
                                                         DatabaseError::Operation::Reading));
    }
}

DatabaseSession::DatabaseSession(DatabaseSession &&) noexcept = default;
DatabaseSession &DatabaseSession::operator=(DatabaseSession &&) noexcept = default;
DatabaseSession::~DatabaseSession() = default;

void DatabaseSession::configure()
{
    sqlite3_create_collation_v2(m_connection->getHandle(), "NOCASE", SQLITE_UTF8, nullptr, collate,
                                nullptr);
    // The name of a column that another tool has renamed must not become a text.
    sqlite3_db_config(m_connection->getHandle(), SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    writeLogOnClose(*m_connection, false); // until the file has been accepted
    // With FULL, a power cut brings back the journal, and thus takes back what was committed, since
    // the folder is not synced after the journal has been deleted.
    m_connection->exec("PRAGMA synchronous = EXTRA; PRAGMA cache_size = -16000");
}

// Reads the file's first page and its schema. Together they find a file that is damaged, incomplete
// or not a recipe database.
void DatabaseSession::checkFile()
{
    SQLite::Transaction snapshot(*m_connection, SQLite::TransactionBehavior::DEFERRED);
    m_checkedSchema = m_connection->execAndGet("PRAGMA schema_version").getInt();
    if (m_connection->execAndGet("PRAGMA application_id").getInt() == applicationId
        && m_connection->execAndGet("PRAGMA user_version").getInt() > schemaVersion)
        throw DatabaseError::newerVersion(m_path);
    // SQLite itself notices only that whole pages are missing.
    if (m_file->isCut())
        throw UnusableDatabase::damaged(m_path, DatabaseError::Operation::Reading);
    checkSchema(*m_connection, m_path);
}

// In the write-ahead mode, which another tool can have set, the newest rows are in a second file
// that a copy made by hand would miss. If the mode cannot be left now, the program works in it.
void DatabaseSession::leaveWalMode()
{
    // Leaving the mode writes the file, as does closing the last connection to it.
    if (m_connection->execAndGet("PRAGMA journal_mode").getString() != "wal" || !isSound())
        return;
    writeLogOnClose(*m_connection, true);
    m_connection->tryExec("PRAGMA journal_mode = DELETE");
}

int DatabaseSession::dataVersion()
{
    return numberOf(*m_dataVersion);
}

int DatabaseSession::schemaCookie()
{
    const int cookie = numberOf(*m_schemaCookie);
    if (cookie != m_checkedSchema) {
        checkSchema(*m_connection, m_path);
        m_checkedSchema = cookie;
    }
    return cookie;
}

void DatabaseSession::beginNested()
{
    run(*m_beginNested);
}

void DatabaseSession::commitNested()
{
    run(*m_commitNested);
}

void DatabaseSession::rollBackNested() noexcept
{
    m_connection->tryExec("ROLLBACK TO nested; RELEASE nested");
}

// Unlike quick_check, which takes half the time, integrity_check also compares each index with its
// table. It fails for an index of another tool's table if only that tool knows how it is sorted.
bool DatabaseSession::isSound()
{
    const auto passes = [this](const std::string &check, bool ifUnknown) {
        try {
            return m_connection->execAndGet("PRAGMA " + check).getString() == "ok";
        } catch (const SQLite::Exception &error) {
            if (error.getErrorCode() != SQLITE_ERROR)
                throw;
            return ifUnknown; // a collation is missing
        }
    };
    if (passes("integrity_check(1)", false))
        return true;
    const std::span<const Table> tables = schemaTables();
    return passes("quick_check(1)", true)
        && std::all_of(tables.begin(), tables.end(), [&passes](const Table &table) {
               return passes("integrity_check(" + std::string(table.name) + ")", false);
           });
}
