#include "takeover/CatalogKeys.h"

#include "takeover/FieldConversion.h"

#include <cmath>

namespace {

void makeUnique(std::vector<qint32> &keys)
{
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
}

// A number that is not finite is the key of no other row.
bool canBeLinked(const oldfiles::Value &key)
{
    const auto *number = std::get_if<double>(&key);
    return std::holds_alternative<qint64>(key) || (number && std::isfinite(*number));
}

} // namespace

void CatalogKeys::add(const oldfiles::Value &key)
{
    const std::optional<qint32> fitting = keyOf(key);
    if (fitting)
        m_keys.push_back(*fitting);
    if (!fitting || !isUsable(*fitting))
        ++m_needed;
}

bool CatalogKeys::sort()
{
    const std::size_t size = m_keys.size();
    makeUnique(m_keys);
    m_needed += static_cast<qint64>(size - m_keys.size()); // counts some unusable keys twice
    m_isTaken.assign(m_keys.size(), false);
    return m_needed > 0;
}

void CatalogKeys::reserve(const oldfiles::Value &linkedKey)
{
    const std::optional<qint32> key = keyOf(linkedKey);
    if (key && isUsable(*key) && find(*key) == m_keys.size())
        m_reserved.push_back(*key);
}

void CatalogKeys::assign(qint32 counter)
{
    makeUnique(m_reserved);
    const auto firstUsable = std::upper_bound(m_keys.begin(), m_keys.end(), 0);
    m_firstUsable = static_cast<std::size_t>(firstUsable - m_keys.begin());
    m_replacements.assign(m_firstUsable + 1, 0);
    const auto endOfUsable = std::lower_bound(firstUsable, m_keys.end(), largestKey);
    m_last = std::max(counter, endOfUsable == firstUsable ? 0 : *(endOfUsable - 1));
    if (m_last + m_needed + static_cast<qint64>(m_reserved.size()) >= largestKey)
        m_last = 0;
}

CatalogKeys::Taken CatalogKeys::take(const oldfiles::Value &key)
{
    if (const std::optional<qint32> fitting = keyOf(key))
        return takeFitting(*fitting);
    return canBeLinked(key) ? takeUnfit(key) : Taken{nextFree(), false};
}

CatalogKeys::Taken CatalogKeys::takeFitting(qint32 key)
{
    const std::size_t index = find(key);
    if (index == m_keys.size())
        return {nextFree(), false};
    if (m_isTaken[index])
        return {nextFree(), true};
    m_isTaken[index] = true;
    if (isUsable(key))
        return {key, false};
    replacement(index) = nextFree();
    return {replacement(index), false};
}

CatalogKeys::Taken CatalogKeys::takeUnfit(const oldfiles::Value &key)
{
    const qint32 newKey = nextFree();
    return {newKey, !m_unfit.emplace(key, newKey).second};
}

std::optional<qint32> CatalogKeys::linked(const oldfiles::Value &key)
{
    const std::optional<qint32> fitting = keyOf(key);
    if (!fitting) {
        const auto found = canBeLinked(key) ? m_unfit.find(key) : m_unfit.end();
        return found != m_unfit.end() ? std::optional(found->second) : std::nullopt;
    }
    if (isUsable(*fitting))
        return fitting;
    const std::size_t index = find(*fitting);
    return index < m_keys.size() && m_isTaken[index] ? replacement(index) : *fitting;
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
    while (find(m_last) < m_keys.size()
           || std::binary_search(m_reserved.begin(), m_reserved.end(), m_last));
    return m_last;
}
