#include "takeover/Takeover.h"

#include "data/DatabaseSession.h"
#include "data/Schema.h"
#include "oldfiles/RecipeFile.h"
#include "platform/Paths.h"
#include "platform/UserVisibleError.h"
#include "takeover/NameNotes.h"
#include "takeover/NewFile.h"
#include "takeover/NewFileCheck.h"
#include "takeover/RowNotes.h"
#include "takeover/TableCopy.h"

#include <QCoreApplication>
#include <QDir>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(Takeover)
};

std::unique_ptr<oldfiles::RecipeFile> openOldFile(const QString &path)
{
    try {
        return std::make_unique<oldfiles::RecipeFile>(platform::nativePath(path));
    } catch (const oldfiles::Error &error) {
        throw platform::UserVisibleError(Text::tr("%1 cannot be taken over. %2")
                                             .arg(QDir::toNativeSeparators(path), error.text()));
    }
}

// Returns what `action` returns. The user has never seen the name of the file that is being made.
template <typename Action>
bool translateSqliteErrors(Action action)
{
    try {
        return action();
    } catch (const SQLite::Exception &error) {
        throw platform::UserVisibleError(
            Text::tr("The new recipe file could not be written: %1. Your old file is unchanged. "
                     "Check that the disk is connected and not full and try again.")
                .arg(QString::fromUtf8(error.what())));
    }
}

// Opens a connection that writes fast and cannot take back what it has written: if anything fails,
// the file is removed, and when all is written, it is synced.
SQLite::Database openForFilling(const QString &path)
{
    configureSqlite();
    SQLite::Database database(path.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX);
    database.exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;"
                  "PRAGMA locking_mode = EXCLUSIVE; PRAGMA cache_size = -16000");
    database.exec(creationScript());
    return database;
}

void notePassedOver(const oldfiles::RecipeFile &file, TakeoverNotes &notes)
{
    for (std::size_t i = 0; i < tableCount; ++i) {
        const QString table = displayName(schemaTables()[i].name);
        for (const QString &column : file.otherColumns(i))
            notes.add(table, NoteKind::PassedOver, [&] {
                return Text::tr("%1: the column %2 was not taken over, because Pantrywise has none "
                                "for it.")
                    .arg(table, column);
            });
    }
    if (!file.catalogProblem().isEmpty())
        notes.add(Text::tr("Tables"), NoteKind::PassedOver, [&] {
            return Text::tr("There may be more tables that Pantrywise does not have. %1")
                .arg(file.catalogProblem());
        });
    for (const QString &table : file.otherTables())
        notes.add(Text::tr("Tables"), NoteKind::PassedOver, [&] {
            return Text::tr("The table %1 was not taken over, because Pantrywise has none for it.")
                .arg(table);
        });
}

} // namespace

// Tells the user how far the work is.
class Takeover::Steps
{
public:
    Steps(const oldfiles::RecipeFile &file, Progress &progress)
        : m_progress(progress)
    {
        for (std::size_t i = 0; i < tableCount; ++i)
            m_total += file.statedRows(i);
    }

    bool advance(qint64 rows, const QString &label)
    {
        // The file may have more rows than it states.
        m_done = std::min(m_done + rows, m_total);
        return m_progress.update(m_done, m_total, label);
    }

private:
    Progress &m_progress;
    qint64 m_done = 0;
    qint64 m_total = 1; // for the check at the end
};

Takeover::Takeover(const QString &oldFile)
    : m_file(openOldFile(oldFile))
{
}

Takeover::~Takeover() = default;

qint64 Takeover::recipeCount() const
{
    constexpr int mostPages = 10'000; // with some 100,000 recipes
    const auto recipes = static_cast<std::size_t>(tableNumber("Recipes"));
    const auto isInBound = [pages = 0]() mutable { return pages++ < mostPages; };
    return std::max(qint64{m_file->statedRows(recipes)}, m_file->storedRows(recipes, isInBound));
}

std::optional<TakeoverReport> Takeover::writeTo(const QString &newFile, Progress &progress)
{
    NewFile file(newFile);
    Steps steps(*m_file, progress);
    CopiedTables copied;
    TakeoverNotes notes;
    if (!fill(newFile, copied, notes, steps) || !check(newFile, copied, notes, steps))
        return {};
    file.keep();
    notePassedOver(*m_file, notes);
    return TakeoverReport{copied.taken, notes.sentences(), notes.sentences(NoteKind::Count)};
}

bool Takeover::fill(const QString &newFile, CopiedTables &copied, TakeoverNotes &notes,
                    Steps &steps)
{
    return translateSqliteErrors([&] {
        SQLite::Database database = openForFilling(newFile);
        TableCopy copy(*m_file, database, copied, notes);
        database.exec("BEGIN");
        for (std::size_t i = 0; i < tableCount; ++i) {
            const QString table = displayName(schemaTables()[i].name);
            const auto step = [&](qint64 rows) { return steps.advance(rows, table); };
            if (!step(0) || !copy.copy(i, step))
                return false;
        }
        database.exec("COMMIT");
        return true;
    });
}

bool Takeover::check(const QString &newFile, CopiedTables &copied, TakeoverNotes &notes,
                     Steps &steps)
{
    const auto step = [&] { return steps.advance(0, Text::tr("Checking")); };
    return translateSqliteErrors([&] {
        DatabaseSession session(newFile, [](sqlite3 *) {});
        if (!step() || !checkNewFile(session.connection(), *m_file, copied, step))
            return false;
        for (std::size_t i = 0; i < tableCount; ++i) {
            if (copied.names[i].needNotes())
                noteNames(session.connection(), schemaTables()[i], notes);
        }
        return true;
    });
}
