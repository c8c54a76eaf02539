#pragma once

#include "data/FieldValue.h"
#include "platform/LargeMemory.h"

#include <cstddef>
#include <vector>

// Rows of cells, packed one after another. A row keeps its address until clear().
class RowStore
{
public:
    using Row = const std::byte *;

    // Drops all rows and keeps the memory for the next ones.
    void clear();

    // A row is made of the cells that are added between these two calls.
    void beginRow();
    Row endRow();
    void add(const Cell &cell);

    // The row must have more than `column` cells. The cost grows with the cells before it.
    static Cell cell(Row row, int column);

private:
    struct Chunk {
        platform::LargeMemory memory;
        std::size_t size;
    };

    std::byte *reserve(std::size_t size);
    void moveRowToNextChunk(std::size_t size);
    void addInteger(qint64 integer);
    template <typename Number>
    void put(std::byte tag, Number number);
    void putBytes(std::byte shortTag, std::byte longTag, std::string_view bytes);

    std::vector<Chunk> m_chunks;
    std::size_t m_chunk = 0; // the one that is being filled
    std::byte *m_rowStart = nullptr;
    std::byte *m_next = nullptr;
    std::byte *m_end = nullptr;
};
