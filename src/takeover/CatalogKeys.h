#pragma once

#include <QtGlobal>

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

// The keys of a catalog of the old file, and those that its rows have in the new one. A row keeps
// its key unless that is missing, not positive, the largest one, after which no other can follow,
// or that of an earlier row: then it gets a new key. Takes 4 bytes a row.
class CatalogKeys
{
public:
    static constexpr qint32 largestKey = std::numeric_limits<qint32>::max();

    // To be called for each row of the old file, in any order; nothing for one without a key.
    void add(std::optional<qint32> key);

    // To be called after the last add(). New keys are larger than `counter` and all others; if too
    // few of them are left, they are those that no row has.
    void assign(qint32 counter);

    // The key of a row in the new file, and whether an earlier row has had its old one.
    struct Taken {
        qint32 key;
        bool isRepeated;
    };

    // To be called once for each row, in their order.
    Taken take(std::optional<qint32> key);

    // Returns what the key of a link refers to: the new key of the first row that had it, or the
    // same key. To be called when all rows have taken their keys.
    qint32 linked(qint32 key);

    static bool isUsable(qint32 key) { return key > 0 && key < largestKey; }

private:
    // Returns the index of the key in m_keys, or the size of it.
    std::size_t find(qint32 key) const;
    qint32 nextFree();
    qint32 &replacement(std::size_t index) // of an unusable key in m_keys
    {
        return m_replacements[std::min(index, m_firstUsable)];
    }

    std::vector<qint32> m_keys; // sorted, each once after assign()
    std::vector<bool> m_isTaken; // by a row, for each of m_keys
    std::size_t m_firstUsable = 0; // in m_keys
    std::vector<qint32> m_replacements; // of the keys before that one, and at last of largestKey
    qint64 m_needed = 0; // new keys
    qint32 m_last = 0; // the last new key
};
