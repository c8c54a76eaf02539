#pragma once

#include "oldfiles/ValueDecoder.h"

#include <QtGlobal>

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <vector>

// The keys of a catalog of the old file, and those that its rows have in the new one. A row keeps
// its key unless that is missing, no whole number, too large, not positive, the largest one, after
// which no other can follow, or that of an earlier row: then it gets a new key. Takes 4 bytes for
// each key that fits into 32 bits.
class CatalogKeys
{
public:
    static constexpr qint32 largestKey = std::numeric_limits<qint32>::max();

    // To be called for each row of the old file, in any order.
    void add(const oldfiles::Value &key);

    // To be called after the last add(). Returns whether rows need new keys.
    bool sort();

    // Keeps the key of a link from becoming a new key, because a link that leads nowhere would lead
    // to that row then. To be called after sort().
    void reserve(const oldfiles::Value &linkedKey);

    // To be called after the last reserve(). New keys are larger than `counter` and all others; if
    // too few of them are left, they are those that neither a row nor a link has.
    void assign(qint32 counter);

    // The key of a row in the new file, and whether an earlier row has had its old one.
    struct Taken {
        qint32 key;
        bool isRepeated;
    };

    // To be called once for each row, in their order.
    Taken take(const oldfiles::Value &key);

    // Returns what the key of a link refers to: the new key of the first row that had it, or the
    // same key if it fits into 32 bits. To be called when all rows have taken their keys.
    std::optional<qint32> linked(const oldfiles::Value &key);

    static bool isUsable(qint32 key) { return key > 0 && key < largestKey; }

private:
    Taken takeFitting(qint32 key);
    Taken takeUnfit(const oldfiles::Value &key);
    // Returns the index of the key in m_keys, or the size of it.
    std::size_t find(qint32 key) const;
    qint32 nextFree();
    qint32 &replacement(std::size_t index) // of an unusable key in m_keys
    {
        return m_replacements[std::min(index, m_firstUsable)];
    }

    std::vector<qint32> m_keys; // sorted, each once after sort()
    std::vector<bool> m_isTaken; // by a row, for each of m_keys
    std::size_t m_firstUsable = 0; // in m_keys
    std::vector<qint32> m_replacements; // of the keys before that one; the last is of largestKey
    std::map<oldfiles::Value, qint32> m_unfit; // the new keys for numbers that do not fit
    std::vector<qint32> m_reserved; // sorted, each once after assign()
    qint64 m_needed = 0; // new keys
    qint32 m_last = 0; // the last new key
};
