#include "oldfiles/RecipeFile.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <numeric>

namespace oldfiles {
namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(RecipeFile)
};

// The catalog is a table that lists all tables, also itself.
constexpr std::array catalogColumns = {
    Column{"Id", ValueKind::Number},
    Column{"Name", ValueKind::Text},
    Column{"Type", ValueKind::Number},
    Column{"Flags", ValueKind::Number},
};
constexpr TableLayout catalogLayout{"MSysObjects", catalogColumns};

// A table as the catalog describes it.
struct CatalogEntry {
    QString name;
    quint32 definitionPage;
    bool isLinked; // the rows are in another file
    bool isOfUser; // neither the system's nor hidden
};

struct Catalog {
    std::vector<CatalogEntry> tables;
    QString problem; // empty if it could be read completely
};

// The catalog also lists queries, forms and the like; they are not returned.
std::optional<CatalogEntry> tableEntry(std::span<const Value> row)
{
    constexpr qint64 table = 1;
    constexpr qint64 linkedByOdbc = 4;
    constexpr qint64 linked = 6;
    constexpr qint64 systemFlags = 0x80000002;
    constexpr qint64 pageMask = 0xFFFFFF;
    const auto number = [](const Value &value) {
        const auto *const integer = std::get_if<qint64>(&value);
        return integer ? *integer : 0;
    };
    const auto *const name = std::get_if<std::string_view>(&row[1]);
    const qint64 type = number(row[2]);
    if (!name || (type != table && type != linkedByOdbc && type != linked))
        return std::nullopt;
    return CatalogEntry{.name =
                            QString::fromUtf8(name->data(), static_cast<qsizetype>(name->size())),
                        .definitionPage = static_cast<quint32>(number(row[0]) & pageMask),
                        .isLinked = type != table,
                        .isOfUser = (number(row[3]) & systemFlags) == 0};
}

std::vector<std::size_t> allColumns(const TableDefinition &table)
{
    std::vector<std::size_t> columns(table.columns.size());
    std::iota(columns.begin(), columns.end(), std::size_t(0));
    return columns;
}

Catalog readCatalog(const PageFile &file)
{
    const TableDefinition definition = readDefinition(file, catalogPage, catalogLayout);
    RowReader rows(file, definition, allColumns(definition));
    Catalog catalog;
    while (rows.next()) {
        if (std::optional<CatalogEntry> entry = tableEntry(rows.values()))
            catalog.tables.push_back(*std::move(entry));
    }
    catalog.problem = rows.firstProblem();
    return catalog;
}

const CatalogEntry &findTable(const Catalog &catalog, std::string_view name)
{
    const auto found = std::ranges::find_if(
        catalog.tables, [name](const CatalogEntry &entry) { return isSameName(entry.name, name); });
    if (found == catalog.tables.end() && !catalog.problem.isEmpty())
        throw Error(
            Text::tr("The table %1 cannot be found. %2").arg(toText(name), catalog.problem));
    if (found == catalog.tables.end())
        throw Error(Text::tr("The table %1 is missing from the file.").arg(toText(name)));
    if (found->isLinked)
        throw Error(
            Text::tr("The table %1 is linked: its rows are in another file.").arg(found->name));
    return *found;
}

void requireCodePages(const TableDefinition &table)
{
    for (const StoredColumn &column : table.columns) {
        if (column.codePage && !column.codePage->isKnown())
            throw Error(Text::tr("The texts of the table %1 are in code page %2, which this system "
                                 "cannot convert. Some systems have further code pages in a "
                                 "package of their own, glibc-gconv-extra or "
                                 "libc-gconv-modules-extra: install it and try again.")
                            .arg(table.name)
                            .arg(column.codePage->number()));
    }
}

} // namespace

RecipeFile::RecipeFile(const std::filesystem::path &path, std::span<const TableLayout> tables)
    : m_file(path)
{
    const Catalog catalog = readCatalog(m_file);
    m_catalogProblem = catalog.problem;
    for (const TableLayout &table : tables) {
        m_tables.push_back(
            readDefinition(m_file, findTable(catalog, table.name).definitionPage, table));
        requireCodePages(m_tables.back());
    }
    for (const CatalogEntry &entry : catalog.tables) {
        const bool isRead = std::ranges::any_of(
            tables, [&](const TableLayout &table) { return isSameName(entry.name, table.name); });
        if (!isRead && entry.isOfUser)
            m_otherTables.append(entry.name);
    }
}

qint64 RecipeFile::storedRows(std::size_t table, RowReader::PageCallback callback) const
{
    RowReader reader(m_file, m_tables[table], {});
    reader.setPageCallback(std::move(callback));
    qint64 count = 0;
    while (reader.next())
        ++count;
    return count;
}

RowReader RecipeFile::rows(std::size_t table) const
{
    return {m_file, m_tables[table], allColumns(m_tables[table])};
}

RowReader RecipeFile::rows(std::size_t table, std::span<const std::size_t> columns) const
{
    return {m_file, m_tables[table], columns};
}

} // namespace oldfiles
