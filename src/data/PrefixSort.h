#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <span>

// Sorting by keys that are slow to compare. Each item carries eight bytes of its key as a number,
// so that most comparisons need nothing else.

template <typename Item>
struct PrefixedItem {
    Item item;
    quint64 prefix = 0;
};

// Sorts by isLess(a, b). prefixOf(item, part) returns the eight bytes of the item's key that follow
// the first 8 * `part` ones, the most significant byte first, or zeros after the end of the key.
// Where the bytes of two keys differ, they must order the items as isLess() does.
template <typename Item, typename PrefixOf, typename IsLess>
void prefixSort(std::span<PrefixedItem<Item>> items, PrefixOf prefixOf, IsLess isLess, int part = 0)
{
    using Entry = PrefixedItem<Item>;
    constexpr std::size_t fewItems = 8;
    constexpr int mostParts = 8; // long equal keys would be read again for each part
    if (items.size() <= fewItems || part == mostParts) {
        std::sort(items.begin(), items.end(),
                  [&](const Entry &a, const Entry &b) { return isLess(a.item, b.item); });
        return;
    }
    for (Entry &entry : items)
        entry.prefix = prefixOf(entry.item, part);
    std::sort(items.begin(), items.end(),
              [](const Entry &a, const Entry &b) { return a.prefix < b.prefix; });
    for (auto first = items.begin(); first != items.end();) {
        const auto last = std::find_if(first + 1, items.end(), [&](const Entry &entry) {
            return entry.prefix != first->prefix;
        });
        constexpr quint64 lastByte = 0xFF;
        const bool isEnd = (first->prefix & lastByte) == 0;
        prefixSort(std::span(first, last), prefixOf, isLess, isEnd ? mostParts : part + 1);
        first = last;
    }
}
