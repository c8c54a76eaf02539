#pragma once

#include "oldfiles/Error.h"

#include <QtEndian>

#include <bit>
#include <concepts>
#include <span>

namespace oldfiles {

// A view of bytes of the file. Every access is checked and throws Damage if it leaves the view.
class Bytes
{
public:
    Bytes() = default;
    Bytes(std::span<const char> bytes) // implicit: a Bytes is such a span with checks
        : m_bytes(bytes)
    {
    }

    std::size_t size() const { return m_bytes.size(); }
    const char *data() const { return m_bytes.data(); }
    std::span<const char> span() const { return m_bytes; }

    // The number at this position, whose bytes are stored from the lowest to the highest.
    template <std::integral Integer>
    Integer read(std::size_t at) const
    {
        return qFromLittleEndian<Integer>(part(at, sizeof(Integer)).data());
    }

    Bytes part(std::size_t at, std::size_t size) const
    {
        require(at <= m_bytes.size() && size <= m_bytes.size() - at);
        return m_bytes.subspan(at, size);
    }

    Bytes from(std::size_t at) const
    {
        require(at <= m_bytes.size());
        return m_bytes.subspan(at);
    }

    // The bytes from `begin` up to `end`, which is not among them.
    Bytes between(std::size_t begin, std::size_t end) const
    {
        require(begin <= end);
        return part(begin, end - begin);
    }

private:
    std::span<const char> m_bytes;
};

} // namespace oldfiles
