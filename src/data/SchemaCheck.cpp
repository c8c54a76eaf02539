#include "data/SchemaCheck.h"

#include "data/DatabaseError.h"
#include "data/Schema.h"

#include <QDir>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SchemaCheck)
};

QString toText(std::string_view name)
{
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

std::string selectOfFields(const Table &table)
{
    std::string fields;
    for (const Field &field : table.fields)
        fields +=
            (fields.empty() ? "" : ", ") + std::string(table.name) + "." + std::string(field.name);
    return "SELECT " + fields + " FROM " + std::string(table.name);
}

struct Declaration {
    QString type;
    std::string collation;
    bool isPrimaryKey;
};

// Returns nothing for the columns of a view and for the rowid of a table that has none.
std::optional<Declaration> declarationOf(SQLite::Database &connection, std::string_view table,
                                         std::string_view column)
{
    const char *type = nullptr;
    const char *collation = nullptr;
    int isPrimaryKey = 0;
    const int result = sqlite3_table_column_metadata(
        connection.getHandle(), "main", std::string(table).c_str(), std::string(column).c_str(),
        &type, &collation, nullptr, &isPrimaryKey, nullptr);
    if (result != SQLITE_OK)
        return {};
    return Declaration{QString::fromUtf8(type), collation, isPrimaryKey != 0};
}

bool containsOneOf(const QString &type, const QStringList &parts)
{
    return std::any_of(parts.begin(), parts.end(), [&](const QString &part) {
        return type.contains(part, Qt::CaseInsensitive);
    });
}

// SQLite converts what is written to the affinity of the column. It derives the affinity from parts
// of the declared type.
bool storesTexts(const QString &type)
{
    return !containsOneOf(type, {u"INT"_s})
        && containsOneOf(type, {u"CHAR"_s, u"CLOB"_s, u"TEXT"_s});
}

bool storesIntegers(const QString &type)
{
    return containsOneOf(type, {u"INT"_s})
        || !containsOneOf(type, {u"CHAR"_s, u"CLOB"_s, u"TEXT"_s, u"REAL"_s, u"FLOA"_s, u"DOUB"_s});
}

bool fits(FieldType type, const Declaration &declared)
{
    switch (type) {
    case FieldType::Text:
        return storesTexts(declared.type) && isSameName(declared.collation, "NOCASE");
    case FieldType::Number:
        return !storesTexts(declared.type);
    case FieldType::Key:
    case FieldType::WholeNumber:
    case FieldType::YesNo:
        return storesIntegers(declared.type);
    }
    return false;
}

// SQLite makes an index for each primary key but INTEGER PRIMARY KEY, which is the rowid.
bool hasIndexOfPrimaryKey(SQLite::Database &connection, const Table &table)
{
    SQLite::Statement indexes(connection,
                              "SELECT 1 FROM pragma_index_list(?, 'main') WHERE origin = 'pk'");
    indexes.bind(1, std::string(table.name));
    return indexes.executeStep();
}

void checkFields(SQLite::Database &connection, const Table &table, const QString &path)
{
    for (const Field &field : table.fields) {
        const bool isCounter = table.hasKey && &field == &table.fields.front();
        const std::optional<Declaration> declared =
            declarationOf(connection, table.name, field.name);
        if (declared && fits(field.type, *declared)
            && (!isCounter || (declared->isPrimaryKey && !hasIndexOfPrimaryKey(connection, table))))
            continue;
        throw UnusableDatabase(
            path,
            Text::tr("%1 is not a recipe database that Pantrywise can use: the field %2 of the "
                     "table %3 must be declared as %4.")
                .arg(QDir::toNativeSeparators(path), toText(field.name), toText(table.name),
                     toText(declaration(table, field))));
    }
}

// The order of the rows is that of their rowids. Views, virtual tables and tables WITHOUT ROWID
// have none, and another column can have its name.
void checkRowid(SQLite::Database &connection, const Table &table, const QString &path)
{
    SQLite::Statement ordinary(
        connection, "SELECT 1 FROM pragma_table_list(?) WHERE schema = 'main' AND type = 'table'");
    ordinary.bind(1, std::string(table.name));
    const std::optional<Declaration> rowid = declarationOf(connection, table.name, "rowid");
    if (!ordinary.executeStep() || !rowid || !rowid->isPrimaryKey)
        throw UnusableDatabase(
            path,
            Text::tr("%1 is not a recipe database that Pantrywise can use: %2 is not an ordinary "
                     "table with row numbers.")
                .arg(QDir::toNativeSeparators(path), toText(table.name)));
}

// The program's NOCASE is not that of other tools. An index that one sorts and the other writes is
// damaged, and a search by it gives wrong answers. A collation that the program does not know
// fails, and what an expression compares cannot be told, so only whole columns in the binary order
// are accepted.
void checkIndexes(SQLite::Database &connection, const Table &table, const QString &path)
{
    SQLite::Statement indexes(
        connection,
        "SELECT name, origin = 'c',"
        " (SELECT group_concat(name, ', ') FROM pragma_index_xinfo(list.name, 'main') WHERE key) "
        "FROM pragma_index_list(?1, 'main') AS list WHERE partial OR EXISTS"
        " (SELECT 1 FROM pragma_index_xinfo(list.name, 'main') WHERE key"
        " AND (upper(coll) <> 'BINARY' OR cid = -2 OR cid IN" // -2 is an expression
        " (SELECT cid FROM pragma_table_xinfo(?1, 'main') WHERE hidden > 1)))"); // generated
    indexes.bind(1, std::string(table.name));
    if (!indexes.executeStep())
        return;
    const QString name = QString::fromStdString(indexes.getColumn(0).getString());
    const QString fields = QString::fromStdString(indexes.getColumn(2).getString());
    const bool isRemovable = indexes.getColumn(1).getInt() != 0;
    if (isRemovable)
        throw DatabaseError(
            Text::tr("Another program has added the index \"%2\" to the table %3 of the recipe "
                     "database %1. Pantrywise sorts names differently and would damage it. Remove "
                     "the index with that program and try again.")
                .arg(QDir::toNativeSeparators(path), name, toText(table.name)));
    throw UnusableDatabase(
        path,
        Text::tr("Another program has made the field %2 of the table %3 unique in the recipe "
                 "database %1. Pantrywise compares names differently and would damage the file.")
            .arg(QDir::toNativeSeparators(path), fields, toText(table.name)));
}

} // namespace

void checkSchema(SQLite::Database &connection, const QString &path)
{
    // SQLite sees only when it runs a statement that another program has changed the schema.
    connection.execAndGet("SELECT count(*) FROM sqlite_schema");
    for (const Table &table : schemaTables()) {
        // Fails if the table or one of its fields is missing.
        const SQLite::Statement statement(connection, selectOfFields(table));
        checkRowid(connection, table, path);
        checkFields(connection, table, path);
        checkIndexes(connection, table, path);
    }
}
