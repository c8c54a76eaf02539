#include "data/Database.h"

#include "data/DatabaseFile.h"

#include <QHash>
#include <QScopeGuard>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <thread>
#include <utility>

namespace {

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

// Returns the table that has no free key left, which SQLite reports in the same way as a full disk.
QString fullTable(SQLite::Database &connection)
{
    for (const Table &table : schemaTables()) {
        const std::string name(table.name);
        std::string largestKey = "SELECT max((SELECT max(rowid) FROM ";
        largestKey.append(name)
            .append("), (SELECT seq FROM sqlite_sequence WHERE name = '")
            .append(name)
            .append("'))");
        try {
            if (connection.execAndGet(largestKey).getInt64()
                == std::numeric_limits<std::int64_t>::max())
                return QString::fromStdString(name);
        } catch (const SQLite::Exception &) {
            return {}; // the disk is full, and reading needs room, too
        }
    }
    return {};
}

} // namespace

std::weak_ptr<Database> &Database::knownDatabase(const QString &path)
{
    static QHash<QString, std::weak_ptr<Database>> databases;
    return databases[DatabaseFile::resolvedPath(path)];
}

std::shared_ptr<Database> Database::open(const QString &path, std::chrono::milliseconds lockTimeout)
{
    std::weak_ptr<Database> &known = knownDatabase(path);
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
    , m_dailyCopy(path)
    , m_session(connect())
{
}

Database::~Database() = default;

void Database::reopen(const QString &path)
{
    const std::shared_ptr<Database> database = knownDatabase(path).lock();
    if (!database)
        return;
    Q_ASSERT(database->m_state == TransactionState::None);
    database->m_retired.push_back(std::exchange(database->m_session, database->connect()));
    database->m_isSound = false;
    database->countChangeOfAllTables();
}

std::optional<qint64> Database::countRecipesIfSound(const QString &path)
{
    constexpr std::chrono::milliseconds noWaiting{0};
    try {
        Database database(path, noWaiting);
        return database.translateSqliteErrors([&database]() -> qint64 {
            database.requireSound();
            return database.connection().execAndGet("SELECT count(*) FROM Recipes").getInt64();
        });
    } catch (const DatabaseError &) {
        return {};
    }
}

QString Database::takeCopyFailure(const QString &path)
{
    const std::shared_ptr<Database> database = knownDatabase(path).lock();
    return database ? database->m_dailyCopy.takeFailure() : QString();
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

DatabaseSession Database::connect()
{
    return DatabaseSession(m_path, [this](sqlite3 *handle) {
        sqlite3_busy_handler(handle, waitForLock, this);
        sqlite3_update_hook(handle, countChange, &m_changes);
        sqlite3_set_authorizer(handle, deleteRowByRow, nullptr);
    });
}

void Database::Execute(const QString &statement)
{
    const std::string text = statement.toStdString();
    write([&] {
        announceChangesBy(text);
        translateSqliteErrors([&] { connection().exec(withoutColumnList(text)); });
    });
}

void Database::announceChangesBy(const std::string &statement)
{
    const auto named = namedTables(statement);
    for (std::size_t table = 0; table < named.size(); ++table) {
        if (named[table])
            announce({.table = table});
    }
}

void Database::write(const std::function<void()> &action)
{
    refuseAfterFailure();
    if (m_depth > 0)
        return action();
    Transaction transaction(*this);
    action();
    transaction.commit();
}

int Database::dataVersion()
{
    return translateSqliteErrors([this] { return m_session.dataVersion(); });
}

// While this program holds the write lock, no other one can change the schema.
int Database::schemaCookie()
{
    if (m_state == TransactionState::Open)
        return m_session.checkedSchemaCookie();
    return translateSqliteErrors([this] { return m_session.schemaCookie(); });
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

void Database::addObserver(ChangeObserver &observer)
{
    m_observers.push_back(&observer);
}

void Database::removeObserver(ChangeObserver &observer)
{
    std::erase(m_observers, &observer);
}

void Database::announce(const TableChange &change, const ChangeObserver *author)
{
    for (ChangeObserver *observer : m_observers) {
        if (observer != author)
            observer->aboutToChange(change);
    }
}

// Makes the next requery of each cursor read again.
void Database::countChangeOfAllTables()
{
    for (quint64 &changes : m_changes)
        ++changes;
}

void Database::notifyParticipants()
{
    // Any other cursor may have read rows that are now rolled back.
    countChangeOfAllTables();
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
    const auto operation = m_state == TransactionState::None ? DatabaseError::Operation::Reading
                                                             : DatabaseError::Operation::Writing;
    std::exception_ptr failure =
        DatabaseError::fromSqlite(m_path, code, QString::fromUtf8(message), operation);
    if (code == SQLITE_FULL && m_state == TransactionState::Open) {
        if (const QString table = fullTable(connection()); !table.isEmpty())
            failure = DatabaseError::keysUsedUp(m_path, table);
    }
    if (m_state != TransactionState::None)
        m_failure = failure;
    if (m_state == TransactionState::Open)
        m_state = TransactionState::StepFailed;
    // A full disk, for example, makes SQLite roll back the whole transaction.
    if (m_state == TransactionState::StepFailed
        && sqlite3_get_autocommit(connection().getHandle()) != 0) {
        m_state = TransactionState::RolledBack;
        restoreFromJournal();
        notifyParticipants();
    }
    std::rethrow_exception(failure);
}

// If SQLite fails while it writes pages, it leaves the journal to the next reader, who restores the
// file from it. Until then a copy of the file alone would be damaged.
void Database::restoreFromJournal()
{
    connection().tryExec("PRAGMA schema_version");
}

// What is written after a failed step would be committed without what should have preceded it.
void Database::refuseAfterFailure() const
{
    if (m_state == TransactionState::StepFailed || m_state == TransactionState::RolledBack)
        std::rethrow_exception(m_failure);
}

void Database::begin()
{
    refuseAfterFailure();
    if (m_depth == 0)
        beginOutermost();
    else
        translateSqliteErrors([this] { m_session.beginNested(); });
    ++m_depth;
    m_state = TransactionState::Open;
}

// Every write of the program passes here, so nothing is written before the file has been prepared.
void Database::beginOutermost()
{
    m_state = TransactionState::Beginning;
    auto giveUp = qScopeGuard([this] {
        connection().tryExec("ROLLBACK");
        m_state = TransactionState::None;
    });
    translateSqliteErrors([this] {
        connection().exec("BEGIN IMMEDIATE");
        prepareWrite();
    });
    giveUp.dismiss();
}

// No other program can write while this runs. What it throws keeps the transaction from beginning.
void Database::prepareWrite()
{
    schemaCookie(); // throws if another program has added an index that must not be written
    const QDate today = QDate::currentDate();
    const bool isCopyDue = m_dailyCopy.isDue(today);
    if (!m_isSound || isCopyDue)
        requireSound();
    m_isSound = true;
    if (isCopyDue)
        m_dailyCopy.make(m_session.file(), today);
}

// What is written into a damaged file can make the damage worse.
void Database::requireSound()
{
    if (!m_session.isSound())
        throw UnusableDatabase::damaged(m_path, DatabaseError::Operation::Writing);
}

void Database::commit()
{
    refuseAfterFailure();
    translateSqliteErrors([this] {
        if (m_depth == 1)
            connection().exec("COMMIT");
        else
            m_session.commitNested();
    });
    end();
}

void Database::rollBack() noexcept
{
    if (m_state != TransactionState::RolledBack) {
        if (m_depth == 1) {
            connection().tryExec("ROLLBACK"); // fails if SQLite has rolled back by itself
            restoreFromJournal();
        } else {
            m_session.rollBackNested();
        }
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
