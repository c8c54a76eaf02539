#pragma once

#include "oldfiles/PageFile.h"
#include "oldfiles/RecipeTables.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace oldfiles {

// The types whose values can be read.
enum class ColumnType : quint8 {
    YesNo = 1,
    Byte = 2,
    Integer = 3, // 16 bits
    LongInteger = 4, // 32 bits
    Money = 5,
    Single = 6,
    Double = 7,
    Text = 10,
    Memo = 12,
    Decimal = 16,
    BigInteger = 19, // 64 bits
};

// How a column is stored.
struct StoredColumn {
    ValueKind kind = ValueKind::Number; // what the layout wants
    ColumnType type = ColumnType::YesNo;
    bool isFixed = false; // stored among the fixed values; a flag of the column, not of its type
    quint16 number = 0; // its bit in the mask of a row
    quint16 variableIndex = 0; // its place among the variable values
    quint16 fixedOffset = 0; // after the number of columns
    quint16 size = 0; // in bytes
    quint8 scale = 0; // of a decimal: the number of digits after the point
    std::shared_ptr<const CodePage> codePage; // of a text in Jet 3; otherwise null
};

struct TableDefinition {
    QString name; // as the layout spells it
    quint32 page = 0; // by which the table's data pages name it
    quint32 statedRows = 0;
    quint32 lastCounter = 0;
    RowPointer map; // of the table's pages
    std::vector<StoredColumn> columns; // those of the layout, in its order
    QStringList otherColumns; // the names of those that the layout does not have
};

// Reads the definition that begins on this page. Throws Error if it is damaged, or if a column of
// the layout is missing, calculated or not of its kind.
TableDefinition readDefinition(const PageFile &file, quint32 page, const TableLayout &layout);

} // namespace oldfiles
