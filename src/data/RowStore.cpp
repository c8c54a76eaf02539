#include "data/RowStore.h"

#include <algorithm>
#include <cstring>
#include <limits>

// A cell is a tag byte followed by what the tag announces: an integer in as few bytes as it needs,
// a double, or a byte count and the bytes.

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

// Cells are not aligned.
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
    if (const auto *integer = std::get_if<qint64>(&cell))
        addInteger(*integer);
    else if (const auto *text = std::get_if<std::string_view>(&cell))
        putBytes(tag::shortText, tag::longText, *text);
    else if (const auto *number = std::get_if<double>(&cell))
        put(tag::real, *number);
    else if (const auto *blob = std::get_if<Blob>(&cell))
        putBytes(tag::shortBlob, tag::longBlob, blob->bytes);
    else
        *reserve(1) = tag::null;
}

void RowStore::addInteger(qint64 integer)
{
    if (fits<qint8>(integer))
        put(tag::integer8, static_cast<qint8>(integer));
    else if (fits<qint16>(integer))
        put(tag::integer16, static_cast<qint16>(integer));
    else if (fits<qint32>(integer))
        put(tag::integer32, static_cast<qint32>(integer));
    else
        put(tag::integer64, integer);
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

// A row never spans two chunks, so the cells that it already has are moved along.
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
        return qint64{read<qint8>(payload)};
    case tag::integer16:
        return qint64{read<qint16>(payload)};
    case tag::integer32:
        return qint64{read<qint32>(payload)};
    case tag::integer64:
        return read<qint64>(payload);
    case tag::real:
        return read<double>(payload);
    case tag::shortText:
        return readBytes<quint8>(payload);
    case tag::longText:
        return readBytes<quint32>(payload);
    case tag::shortBlob:
        return Blob{readBytes<quint8>(payload)};
    case tag::longBlob:
        return Blob{readBytes<quint32>(payload)};
    default:
        return {};
    }
}
