#pragma once

#include "oldfiles/PageFile.h"
#include "oldfiles/TableDefinition.h"

#include <optional>

namespace oldfiles {

// Finds the values in the bytes of a row.
class RowLayout
{
public:
    // Throws Damage if the row is too short.
    RowLayout(Bytes row, const Format &format);

    // Whether the column has a value. For yes/no, this is the value.
    bool hasValue(const StoredColumn &column) const;

    // Returns the bytes of a value, or nothing if the row has fewer variable values than the
    // column's index, which means null. `size` is the number of bytes of a fixed value. Throws
    // Damage if the value does not fit into the row.
    std::optional<Bytes> value(const StoredColumn &column, std::size_t size) const;

private:
    std::optional<Bytes> variableValue(std::size_t index) const;
    std::optional<Bytes> jet3VariableValue(std::size_t index) const;

    Bytes m_row;
    bool m_isJet3;
    std::size_t m_columnCount; // when the row was written
    std::size_t m_maskStart;
};

} // namespace oldfiles
