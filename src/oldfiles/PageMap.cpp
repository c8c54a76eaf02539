#include "oldfiles/PageMap.h"

namespace oldfiles {
namespace {

// The first byte of a map says how it is stored: the number of the first page and then the bits, or
// the numbers of the pages that hold the bits.
constexpr quint8 direct = 0;
constexpr quint8 indirect = 1;
constexpr std::size_t kindSize = 1;

constexpr std::size_t bitsPerByte = 8;
constexpr std::size_t mapPageHead = 4;
constexpr quint32 largestPage = 0xFFFFFF; // that a row pointer can name

std::vector<char> copyOf(Bytes bytes)
{
    return {bytes.span().begin(), bytes.span().end()};
}

} // namespace

PageMap::PageMap(const PageFile &file, RowPointer map)
    : m_file(file)
{
    const Bytes row = file.row(map, DataPage::usageMapOwner, DataPage::RowState::Present, m_page);
    const auto kind = row.read<quint8>(0);
    require(kind == direct || kind == indirect);
    if (kind == indirect) {
        m_parts = copyOf(row.from(kindSize));
        return;
    }
    m_firstPage = row.read<quint32>(kindSize);
    require(m_firstPage <= largestPage);
    m_bits = copyOf(row.from(kindSize + sizeof(quint32)));
}

std::optional<quint32> PageMap::next()
{
    do {
        while (m_bit < m_bits.size() * bitsPerByte) {
            const auto byte = static_cast<unsigned char>(m_bits[m_bit / bitsPerByte]);
            const unsigned rest = byte >> (m_bit % bitsPerByte);
            if (rest == 0) {
                m_bit += bitsPerByte - m_bit % bitsPerByte;
                continue;
            }
            m_bit += static_cast<std::size_t>(std::countr_zero(rest)) + 1;
            return m_firstPage + static_cast<quint32>(m_bit - 1);
        }
    } while (goToNextPart());
    return std::nullopt;
}

bool PageMap::goToNextPart()
{
    m_bits.clear();
    m_bit = 0;
    const std::size_t bitsPerPage = (m_file.format().pageSize - mapPageHead) * bitsPerByte;
    while ((m_part + 1) * sizeof(quint32) <= m_parts.size()) {
        const std::size_t part = m_part++;
        const auto number = Bytes(m_parts).read<quint32>(part * sizeof(quint32));
        if (number == 0)
            continue;
        require(part * bitsPerPage < m_file.pageCount()); // or its bits mean no page of the file
        const Bytes page = m_file.page(number, m_page);
        require(page.read<quint8>(0) == static_cast<quint8>(PageKind::UsageMap));
        m_firstPage = static_cast<quint32>(part * bitsPerPage);
        m_bits = copyOf(page.from(mapPageHead));
        return true;
    }
    return false;
}

} // namespace oldfiles
