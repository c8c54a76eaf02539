#include "oldfiles/TableDefinition.h"

#include "oldfiles/Utf16.h"

#include <QCoreApplication>

#include <algorithm>

namespace oldfiles {
namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TableDefinition)
};

constexpr std::size_t nextPageAt = 4;
constexpr std::size_t followingHead = 8; // of the pages after the first one
constexpr std::size_t mostPages = 64; // 255 columns and 32 indexes need fewer; ends a loop
constexpr std::size_t mostColumns = 255;

// Where a definition has its parts.
struct DefinitionFormat {
    std::size_t rows;
    std::size_t counter;
    std::size_t columnCount;
    std::size_t indexCount;
    std::size_t map;
    std::size_t indexes; // blocks of `indexSize`; the columns' records follow, and then their names
    std::size_t indexSize;
    std::size_t columnSize;
    // in the record of a column
    std::size_t number;
    std::size_t variableIndex;
    std::size_t codePage; // Jet 3
    std::size_t scale; // Jet 4
    std::size_t flags;
    std::size_t moreFlags; // Jet 4
    std::size_t fixedOffset;
    std::size_t size;
};

constexpr DefinitionFormat jet3{.rows = 12,
                                .counter = 16,
                                .columnCount = 25,
                                .indexCount = 31,
                                .map = 35,
                                .indexes = 43,
                                .indexSize = 8,
                                .columnSize = 18,
                                .number = 1,
                                .variableIndex = 3,
                                .codePage = 11,
                                .scale = 0,
                                .flags = 13,
                                .moreFlags = 0,
                                .fixedOffset = 14,
                                .size = 16};

constexpr DefinitionFormat jet4{.rows = 16,
                                .counter = 20,
                                .columnCount = 45,
                                .indexCount = 51,
                                .map = 55,
                                .indexes = 63,
                                .indexSize = 12,
                                .columnSize = 25,
                                .number = 5,
                                .variableIndex = 7,
                                .codePage = 0,
                                .scale = 12,
                                .flags = 15,
                                .moreFlags = 16,
                                .fixedOffset = 21,
                                .size = 23};

const DefinitionFormat &formatOf(const PageFile &file)
{
    return file.format().isJet3 ? jet3 : jet4;
}

// A column as the definition describes it.
struct ColumnRecord {
    QString name;
    StoredColumn stored;
    bool isCalculated = false; // its values are wrapped
    quint16 codePage = 0; // Jet 3: of a text; 0 is that of the file
};

// Joins the pages of a definition.
std::vector<char> joinPages(const PageFile &file, quint32 first)
{
    std::vector<char> joined;
    PageBuffer buffer;
    std::size_t pages = 0;
    for (quint32 number = first; number != 0 || pages == 0;) {
        require(++pages <= mostPages);
        const Bytes page = file.page(number, buffer);
        require(page.read<quint8>(0) == static_cast<quint8>(PageKind::Definition));
        const Bytes part = pages == 1 ? page : page.from(followingHead);
        joined.insert(joined.end(), part.span().begin(), part.span().end());
        number = page.read<quint32>(nextPageAt);
    }
    return joined;
}

ColumnRecord readRecord(Bytes record, const DefinitionFormat &format)
{
    constexpr unsigned fixedFlag = 1;
    constexpr unsigned calculatedFlags = 0xC0;
    ColumnRecord column;
    StoredColumn &stored = column.stored;
    stored.type = static_cast<ColumnType>(record.read<quint8>(0));
    stored.isFixed = (record.read<quint8>(format.flags) & fixedFlag) != 0;
    stored.number = record.read<quint16>(format.number);
    stored.variableIndex = record.read<quint16>(format.variableIndex);
    stored.fixedOffset = record.read<quint16>(format.fixedOffset);
    stored.size = record.read<quint16>(format.size);
    if (format.codePage != 0)
        column.codePage = record.read<quint16>(format.codePage);
    if (format.scale != 0)
        stored.scale = record.read<quint8>(format.scale);
    if (format.moreFlags != 0)
        column.isCalculated =
            (record.read<quint8>(format.moreFlags) & calculatedFlags) == calculatedFlags;
    return column;
}

// Reads the name at this position and moves the position past it.
QString readName(const PageFile &file, Bytes definition, std::size_t &position)
{
    std::string name;
    if (file.format().isJet3) {
        const std::size_t size = definition.read<quint8>(position);
        file.codePage()->append(definition.part(position + 1, size), name);
        position += 1 + size;
    } else {
        const std::size_t size = definition.read<quint16>(position);
        appendUtf16(definition.part(position + sizeof(quint16), size), name);
        position += sizeof(quint16) + size;
    }
    return QString::fromStdString(name);
}

std::vector<ColumnRecord> readColumns(const PageFile &file, Bytes definition)
{
    const DefinitionFormat &format = formatOf(file);
    const std::size_t count = definition.read<quint16>(format.columnCount);
    require(count <= mostColumns);
    const std::size_t indexCount = definition.read<quint32>(format.indexCount);
    const std::size_t records = format.indexes + indexCount * format.indexSize;
    std::size_t position = records + count * format.columnSize;
    std::vector<ColumnRecord> columns;
    for (std::size_t i = 0; i < count; ++i) {
        const Bytes record = definition.part(records + i * format.columnSize, format.columnSize);
        columns.push_back(readRecord(record, format));
        columns.back().name = readName(file, definition, position);
    }
    return columns;
}

bool isSuitable(ColumnType type, ValueKind kind)
{
    switch (type) {
    case ColumnType::YesNo:
        return kind == ValueKind::YesNo;
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::LongInteger:
    case ColumnType::BigInteger:
        return kind == ValueKind::Number || kind == ValueKind::YesNo;
    case ColumnType::Money:
    case ColumnType::Single:
    case ColumnType::Double:
    case ColumnType::Decimal:
        return kind == ValueKind::Number;
    case ColumnType::Text:
    case ColumnType::Memo:
        return kind == ValueKind::Text;
    }
    return false; // a type that cannot be read
}

QString unsuitableText(const QString &column, const QString &table, ValueKind kind)
{
    switch (kind) {
    case ValueKind::Number:
        return Text::tr("The column %1 of the table %2 does not hold numbers.").arg(column, table);
    case ValueKind::YesNo:
        return Text::tr("The column %1 of the table %2 holds neither yes and no nor whole numbers.")
            .arg(column, table);
    case ValueKind::Text:
        return Text::tr("The column %1 of the table %2 does not hold texts.").arg(column, table);
    }
    return {};
}

StoredColumn findColumn(const PageFile &file, const std::vector<ColumnRecord> &columns,
                        const Column &wanted, const QString &table)
{
    const auto found = std::ranges::find_if(
        columns, [&](const ColumnRecord &column) { return isSameName(column.name, wanted.name); });
    if (found == columns.end())
        throw Error(Text::tr("The column %1 is missing from the table %2.")
                        .arg(toText(wanted.name), table));
    if (found->isCalculated)
        throw Error(Text::tr("The column %1 of the table %2 is calculated. Its values cannot be "
                             "read.")
                        .arg(found->name, table));
    StoredColumn column = found->stored;
    column.kind = wanted.kind;
    if (!isSuitable(column.type, wanted.kind))
        throw Error(unsuitableText(found->name, table, wanted.kind));
    if (file.format().isJet3 && wanted.kind == ValueKind::Text)
        column.codePage = found->codePage == 0 || found->codePage == file.codePage()->number()
            ? file.codePage()
            : std::make_shared<const CodePage>(found->codePage);
    return column;
}

} // namespace

TableDefinition readDefinition(const PageFile &file, quint32 page, const TableLayout &layout)
{
    TableDefinition table;
    table.name = toText(layout.name);
    table.page = page;
    std::vector<ColumnRecord> columns;
    try {
        const std::vector<char> joined = joinPages(file, page);
        const Bytes definition(joined);
        const DefinitionFormat &format = formatOf(file);
        table.statedRows = definition.read<quint32>(format.rows);
        table.lastCounter = definition.read<quint32>(format.counter);
        table.map = RowPointer(definition.read<quint32>(format.map));
        columns = readColumns(file, definition);
    } catch (const Damage &) {
        throw Error(Text::tr("The definition of the table %1, which begins on page %2, is damaged.")
                        .arg(table.name)
                        .arg(page));
    }
    for (const Column &wanted : layout.columns)
        table.columns.push_back(findColumn(file, columns, wanted, table.name));
    for (const ColumnRecord &column : columns) {
        if (std::ranges::none_of(layout.columns, [&](const Column &wanted) {
                return isSameName(column.name, wanted.name);
            }))
            table.otherColumns.append(column.name);
    }
    return table;
}

} // namespace oldfiles
