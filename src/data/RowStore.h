#pragma once

#include "platform/LargeMemory.h"

#include <QtGlobal>

#include <cstddef>
#include <string_view>
#include <vector>

// One cell of a row, as it was stored: every cell has a type of its own.
struct Cell {
    enum class Type { Null, Integer, Real, Text, Blob };
    Type type = Type::Null;
    qint64 integer = 0;
    double real = 0;
    std::string_view bytes; // of a text (UTF-8) or a blob; lies in the store
};

// Rows of cells, packed one behind the other. A row keeps its address until clear().
class RowStore
{
public:
    using Row = const std::byte *;

    // Forgets all rows and keeps the memory for the next ones.
    void clear();

    // A row is made cell by cell, between these two.
    void beginRow();
    Row endRow();
    void add(const Cell &cell);

    static Cell cell(Row row, int column);

private:
    struct Chunk {
        platform::LargeMemory memory;
        std::size_t size;
    };

    std::byte *reserve(std::size_t size);
    void moveRowToNextChunk(std::size_t size);
    template <typename Number>
    void put(std::byte tag, Number number);
    void putBytes(std::byte shortTag, std::byte longTag, std::string_view bytes);

    std::vector<Chunk> m_chunks;
    std::size_t m_chunk = 0; // the one that is being filled
    std::byte *m_rowStart = nullptr;
    std::byte *m_next = nullptr;
    std::byte *m_end = nullptr;
};
