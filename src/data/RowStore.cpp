#include "data/RowStore.h"

#include <algorithm>
#include <cstring>
#include <limits>

// A cell is a tag byte and what the tag says: an integer in as few bytes as it needs, a double, or
// bytes behind their count.

namespace {

namespace tag {
constexpr std::byte null{0};
constexpr std::byte integer8{1};
constexpr std::byte integer16{2};
constexpr std::byte integer32{3};
constexpr std::byte integer64{4};
constexpr std::byte real{5};
constexpr std::byte shortText{6};
constexpr std::byte longText{7};
constexpr std::byte shortBlob{8};
constexpr std::byte longBlob{9};
} // namespace tag

template <typename Number>
bool fits(qint64 value)
{
    return value >= std::numeric_limits<Number>::min()
        && value <= std::numeric_limits<Number>::max();
}

// Cells lie at any address.
template <typename Number>
Number read(const std::byte *from)
{
    Number number;
    std::memcpy(&number, from, sizeof number);
    return number;
}

template <typename Count>
std::string_view readBytes(const std::byte *from)
{
    return {reinterpret_cast<const char *>(from + sizeof(Count)), read<Count>(from)};
}

std::size_t payloadSize(std::byte cellTag, const std::byte *payload)
{
    switch (cellTag) {
    case tag::integer8:
        return sizeof(qint8);
    case tag::integer16:
        return sizeof(qint16);
    case tag::integer32:
        return sizeof(qint32);
    case tag::integer64:
        return sizeof(qint64);
    case tag::real:
        return sizeof(double);
    case tag::shortText:
    case tag::shortBlob:
        return sizeof(quint8) + read<quint8>(payload);
    case tag::longText:
    case tag::longBlob:
        return sizeof(quint32) + read<quint32>(payload);
    default:
        return 0;
    }
}

} // namespace

void RowStore::clear()
{
    m_chunk = 0;
    m_next = m_chunks.empty() ? nullptr : m_chunks.front().memory.get();
    m_end = m_chunks.empty() ? nullptr : m_next + m_chunks.front().size;
    m_rowStart = m_next;
}

void RowStore::beginRow()
{
    m_rowStart = m_next;
}

RowStore::Row RowStore::endRow()
{
    return m_rowStart;
}

void RowStore::add(const Cell &cell)
{
    switch (cell.type) {
    case Cell::Type::Null:
        *reserve(1) = tag::null;
        break;
    case Cell::Type::Integer:
        if (fits<qint8>(cell.integer))
            put(tag::integer8, static_cast<qint8>(cell.integer));
        else if (fits<qint16>(cell.integer))
            put(tag::integer16, static_cast<qint16>(cell.integer));
        else if (fits<qint32>(cell.integer))
            put(tag::integer32, static_cast<qint32>(cell.integer));
        else
            put(tag::integer64, cell.integer);
        break;
    case Cell::Type::Real:
        put(tag::real, cell.real);
        break;
    case Cell::Type::Text:
        putBytes(tag::shortText, tag::longText, cell.bytes);
        break;
    case Cell::Type::Blob:
        putBytes(tag::shortBlob, tag::longBlob, cell.bytes);
        break;
    }
}

template <typename Number>
void RowStore::put(std::byte cellTag, Number number)
{
    std::byte *at = reserve(1 + sizeof number);
    *at = cellTag;
    std::memcpy(at + 1, &number, sizeof number);
}

void RowStore::putBytes(std::byte shortTag, std::byte longTag, std::string_view bytes)
{
    const bool isShort = bytes.size() <= std::numeric_limits<quint8>::max();
    if (isShort)
        put(shortTag, static_cast<quint8>(bytes.size()));
    else
        put(longTag, static_cast<quint32>(bytes.size()));
    if (!bytes.empty())
        std::memcpy(reserve(bytes.size()), bytes.data(), bytes.size());
}

std::byte *RowStore::reserve(std::size_t size)
{
    if (static_cast<std::size_t>(m_end - m_next) < size)
        moveRowToNextChunk(size);
    std::byte *at = m_next;
    m_next += size;
    return at;
}

// Rows never span chunks: the row that has been begun goes along.
void RowStore::moveRowToNextChunk(std::size_t size)
{
    constexpr std::size_t firstSize = std::size_t{64} << 10U;
    constexpr std::size_t largestSize = std::size_t{8} << 20U;
    const auto begun = static_cast<std::size_t>(m_next - m_rowStart);
    const std::size_t needed = begun + size;

    std::size_t following = m_chunks.empty() ? 0 : m_chunk + 1;
    while (following < m_chunks.size() && m_chunks[following].size < needed)
        ++following;
    if (following == m_chunks.size()) {
        const std::size_t usual =
            m_chunks.empty() ? firstSize : std::min(8 * m_chunks.back().size, largestSize);
        const std::size_t chunkSize = std::max(usual, needed);
        m_chunks.push_back({platform::allocateLargeMemory(chunkSize), chunkSize});
    }

    std::byte *memory = m_chunks[following].memory.get();
    if (begun > 0)
        std::memcpy(memory, m_rowStart, begun);
    m_chunk = following;
    m_rowStart = memory;
    m_next = memory + begun;
    m_end = memory + m_chunks[following].size;
}

Cell RowStore::cell(Row row, int column)
{
    for (; column > 0; --column)
        row += 1 + payloadSize(*row, row + 1);

    const std::byte *payload = row + 1;
    switch (*row) {
    case tag::integer8:
        return {Cell::Type::Integer, read<qint8>(payload), 0, {}};
    case tag::integer16:
        return {Cell::Type::Integer, read<qint16>(payload), 0, {}};
    case tag::integer32:
        return {Cell::Type::Integer, read<qint32>(payload), 0, {}};
    case tag::integer64:
        return {Cell::Type::Integer, read<qint64>(payload), 0, {}};
    case tag::real:
        return {Cell::Type::Real, 0, read<double>(payload), {}};
    case tag::shortText:
        return {Cell::Type::Text, 0, 0, readBytes<quint8>(payload)};
    case tag::longText:
        return {Cell::Type::Text, 0, 0, readBytes<quint32>(payload)};
    case tag::shortBlob:
        return {Cell::Type::Blob, 0, 0, readBytes<quint8>(payload)};
    case tag::longBlob:
        return {Cell::Type::Blob, 0, 0, readBytes<quint32>(payload)};
    default:
        return {};
    }
}
