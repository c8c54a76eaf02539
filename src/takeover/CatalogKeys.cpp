#include "takeover/CatalogKeys.h"

void CatalogKeys::add(std::optional<qint32> key)
{
    if (key)
        m_keys.push_back(*key);
    if (!key || !isUsable(*key))
        ++m_needed;
}

void CatalogKeys::assign(qint32 counter)
{
    std::sort(m_keys.begin(), m_keys.end());
    const auto end = std::unique(m_keys.begin(), m_keys.end());
    m_needed += m_keys.end() - end; // too many if keys that are not usable occur twice
    m_keys.erase(end, m_keys.end());
    m_isTaken.assign(m_keys.size(), false);

    const auto firstUsable = std::upper_bound(m_keys.begin(), m_keys.end(), 0);
    m_firstUsable = static_cast<std::size_t>(firstUsable - m_keys.begin());
    m_replacements.assign(m_firstUsable + 1, 0);
    const auto endOfUsable = std::lower_bound(firstUsable, m_keys.end(), largestKey);
    m_last = std::max(counter, endOfUsable == firstUsable ? 0 : *(endOfUsable - 1));
    if (m_last + m_needed >= largestKey)
        m_last = 0;
}

CatalogKeys::Taken CatalogKeys::take(std::optional<qint32> key)
{
    const std::size_t index = key ? find(*key) : m_keys.size();
    if (index == m_keys.size())
        return {nextFree(), false};
    if (m_isTaken[index])
        return {nextFree(), true};
    m_isTaken[index] = true;
    if (!isUsable(*key))
        replacement(index) = nextFree();
    return {isUsable(*key) ? *key : replacement(index), false};
}

qint32 CatalogKeys::linked(qint32 key)
{
    if (isUsable(key))
        return key;
    const std::size_t index = find(key);
    return index < m_keys.size() && m_isTaken[index] ? replacement(index) : key;
}

std::size_t CatalogKeys::find(qint32 key) const
{
    const auto found = std::lower_bound(m_keys.begin(), m_keys.end(), key);
    return found != m_keys.end() && *found == key ? static_cast<std::size_t>(found - m_keys.begin())
                                                  : m_keys.size();
}

qint32 CatalogKeys::nextFree()
{
    do
        ++m_last;
    while (find(m_last) < m_keys.size());
    return m_last;
}
