#pragma once

#include "oldfiles/PageFile.h"

#include <optional>
#include <vector>

namespace oldfiles {

// The numbers of the pages that belong to a table. Pages that the table has given up still name it
// as their owner, so that only this map tells which rows there are.
class PageMap
{
public:
    // Throws Damage if the map cannot be read.
    PageMap(const PageFile &file, RowPointer map);

    // Returns the next page, in rising order. Throws Damage if a part of the map cannot be read;
    // the next call goes on after this part.
    std::optional<quint32> next();

private:
    bool goToNextPart();

    const PageFile &m_file;
    std::vector<char> m_parts; // the numbers of the pages that hold the bits; may be empty
    std::size_t m_part = 0; // the next one
    PageBuffer m_page;
    std::vector<char> m_bits;
    std::size_t m_bit = 0; // the next one
    quint32 m_firstPage = 0; // the page of the first bit
};

} // namespace oldfiles
