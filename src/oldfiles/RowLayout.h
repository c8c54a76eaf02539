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

    // The bytes of a value that the row has: none if its place is beyond those of the row. `size`
    // is the number of bytes of a fixed value. Throws Damage.
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
