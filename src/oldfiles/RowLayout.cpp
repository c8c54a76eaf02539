#include "oldfiles/RowLayout.h"

namespace oldfiles {
namespace {

constexpr std::size_t bitsPerByte = 8;
constexpr std::size_t mostColumns = 255;
constexpr std::size_t place = sizeof(quint16); // of a variable value in Jet 4

std::size_t columnCountSize(bool isJet3)
{
    return isJet3 ? sizeof(quint8) : sizeof(quint16);
}

} // namespace

// A row is the number of columns, the fixed values, the variable values, their places, and a mask
// with a bit for each column.
RowLayout::RowLayout(Bytes row, const Format &format)
    : m_row(row)
    , m_isJet3(format.isJet3)
    , m_columnCount(m_isJet3 ? row.read<quint8>(0) : row.read<quint16>(0))
{
    const std::size_t maskSize = (m_columnCount + bitsPerByte - 1) / bitsPerByte;
    require(m_columnCount <= mostColumns && columnCountSize(m_isJet3) + maskSize <= row.size());
    m_maskStart = row.size() - maskSize;
}

// A column that was added after the row was written has no bit in it.
bool RowLayout::hasValue(const StoredColumn &column) const
{
    if (column.number >= m_columnCount)
        return false;
    const auto bits = m_row.read<quint8>(m_maskStart + column.number / bitsPerByte);
    return (bits >> column.number % bitsPerByte & 1U) != 0;
}

std::optional<Bytes> RowLayout::value(const StoredColumn &column, std::size_t size) const
{
    if (!column.isFixed)
        return m_isJet3 ? jet3VariableValue(column.variableIndex)
                        : variableValue(column.variableIndex);
    const std::size_t begin = columnCountSize(m_isJet3) + column.fixedOffset;
    require(begin + size <= m_maskStart);
    return m_row.part(begin, size);
}

// The places are stored backwards before the number of values: that of the first one is next to the
// number, and the end of the last value comes first.
std::optional<Bytes> RowLayout::variableValue(std::size_t index) const
{
    require(m_maskStart >= place);
    const std::size_t countAt = m_maskStart - place;
    const auto count = m_row.read<quint16>(countAt);
    if (index >= count)
        return std::nullopt;
    require((count + std::size_t(1)) * place <= countAt);
    const std::size_t dataEnd = countAt - (count + std::size_t(1)) * place;
    const auto begin = m_row.read<quint16>(countAt - (index + 1) * place);
    const auto end = m_row.read<quint16>(countAt - (index + 2) * place);
    require(begin >= place && end <= dataEnd);
    return m_row.between(begin, end);
}

// In Jet 3 a place is one byte. A table of jumps between the number of values and the places names
// the values from which another 256 are added. It is as long as the row needs, so that its last
// jump means nothing if the data end before it.
std::optional<Bytes> RowLayout::jet3VariableValue(std::size_t index) const
{
    constexpr std::size_t jumpLength = 256;
    require(m_maskStart >= 1);
    const std::size_t countAt = m_maskStart - 1;
    const auto count = m_row.read<quint8>(countAt);
    if (index >= count)
        return std::nullopt;
    const std::size_t jumps = (m_row.size() - 1) / jumpLength;
    require(jumps + count + 1 <= countAt);
    const std::size_t placesEnd = countAt - jumps;
    const std::size_t dataEnd = placesEnd - (count + std::size_t(1));
    const std::size_t validJumps = std::min(jumps, dataEnd / jumpLength);

    const auto placeOf = [&](std::size_t value) {
        std::size_t result = m_row.read<quint8>(placesEnd - 1 - value);
        for (std::size_t jump = 0; jump < validJumps; ++jump) {
            if (m_row.read<quint8>(countAt - 1 - jump) <= value)
                result += jumpLength;
        }
        return result;
    };
    const std::size_t begin = placeOf(index);
    const std::size_t end = placeOf(index + 1);
    require(begin >= 1 && end <= dataEnd);
    return m_row.between(begin, end);
}

} // namespace oldfiles
