#include "data/RowOrder.h"

#include "data/PrefixSort.h"
#include "data/TextComparison.h"

#include <cmath>
#include <limits>

namespace {

template <typename Value>
int compareValues(Value a, Value b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

// Neither type can hold all values of the other one.
int compareNumbers(qint64 a, double b)
{
    constexpr double beyondIntegers = 9223372036854775808.0; // 2^63
    if (b >= beyondIntegers)
        return -1;
    if (b < -beyondIntegers)
        return 1;
    const auto whole = static_cast<qint64>(b);
    return a != whole ? compareValues(a, whole) : compareValues(static_cast<double>(whole), b);
}

int compareNumbers(const Cell &a, const Cell &b)
{
    const auto *leftInteger = std::get_if<qint64>(&a);
    const auto *rightInteger = std::get_if<qint64>(&b);
    if (leftInteger != nullptr && rightInteger != nullptr)
        return compareValues(*leftInteger, *rightInteger);
    if (leftInteger != nullptr)
        return compareNumbers(*leftInteger, std::get<double>(b));
    if (rightInteger != nullptr)
        return -compareNumbers(*rightInteger, std::get<double>(a));
    return compareValues(std::get<double>(a), std::get<double>(b));
}

enum class CellClass : quint8 { Null, Number, Text, Blob }; // in SQLite's order

CellClass classOf(const Cell &cell)
{
    if (std::holds_alternative<std::string_view>(cell))
        return CellClass::Text;
    if (std::holds_alternative<Blob>(cell))
        return CellClass::Blob;
    return cell == Cell() ? CellClass::Null : CellClass::Number;
}

int compareCells(const Cell &a, const Cell &b, bool foldsCase)
{
    const CellClass kind = classOf(a);
    if (kind != classOf(b))
        return compareValues(kind, classOf(b));
    switch (kind) {
    case CellClass::Null:
        return 0;
    case CellClass::Number:
        return compareNumbers(a, b);
    case CellClass::Text: {
        const auto left = std::get<std::string_view>(a);
        const auto right = std::get<std::string_view>(b);
        return foldsCase ? compareTexts(left, right) : left.compare(right);
    }
    case CellClass::Blob:
        return std::get<Blob>(a).bytes.compare(std::get<Blob>(b).bytes);
    }
    return 0;
}

qint64 keyIn(RowStore::Row row, int column)
{
    const Cell cell = RowStore::cell(row, column);
    const auto *key = std::get_if<qint64>(&cell);
    return key != nullptr ? *key : 0;
}

struct Prefix {
    quint64 bytes = 0;
    int freeBits = 64;

    void add(quint64 number, int bits)
    {
        freeBits -= bits;
        bytes |= number << freeBits;
    }
};

// Adds the largest 16-bit integer that is not greater than the number, as far as there is one.
// Returns how the number compares with the integer.
int addNumber(Prefix &prefix, const Cell &cell)
{
    constexpr qint64 smallest = std::numeric_limits<qint16>::min();
    constexpr qint64 largest = std::numeric_limits<qint16>::max();
    constexpr int bits = 16;
    qint64 whole = 0;
    if (const auto *integer = std::get_if<qint64>(&cell))
        whole = std::clamp(*integer, smallest, largest);
    else
        whole = static_cast<qint64>(
            std::clamp(std::floor(std::get<double>(cell)), double{smallest}, double{largest}));
    prefix.add(static_cast<quint64>(whole - smallest), bits);
    return compareNumbers(cell, whole);
}

} // namespace

RowOrder::RowOrder(std::vector<Column> columns, int keyColumn)
    : m_columns(std::move(columns))
    , m_keyColumn(keyColumn)
{
}

bool RowOrder::isLess(RowStore::Row a, RowStore::Row b) const
{
    for (const Column &column : m_columns) {
        const int order = compareCells(RowStore::cell(a, column.number),
                                       RowStore::cell(b, column.number), column.foldsCase);
        if (order != 0)
            return order < 0;
    }
    return keyIn(a, m_keyColumn) < keyIn(b, m_keyColumn);
}

// The key of prefixSort(): a byte for the kind of each value, two for a number that they hold
// exactly, and all bytes of the first text, after which nothing else fits.
quint64 RowOrder::prefix(RowStore::Row row, int part) const
{
    constexpr int kindBits = 8;
    constexpr int mostBits = 24; // of a column that another one follows
    Prefix prefix;
    for (const Column &column : m_columns) {
        if (prefix.freeBits < mostBits)
            break;
        const Cell cell = RowStore::cell(row, column.number);
        const CellClass kind = classOf(cell);
        prefix.add(static_cast<quint64>(kind), kindBits);
        if (kind == CellClass::Number) {
            const int rest = addNumber(prefix, cell);
            if (rest > 0)
                prefix.add((quint64{1} << prefix.freeBits) - 1, prefix.freeBits);
            if (rest != 0)
                break;
        } else if (kind == CellClass::Text && column.foldsCase) {
            const auto text = std::get<std::string_view>(cell);
            const int used = 64 - prefix.freeBits;
            if (part > 0)
                return textPrefix(text, static_cast<std::size_t>(8 * part - used / 8));
            return prefix.bytes | textPrefix(text, 0) >> used;
        } else if (kind != CellClass::Null) {
            break;
        }
    }
    return part == 0 ? prefix.bytes : 0;
}

void RowOrder::sort(std::vector<RowStore::Row> &rows) const
{
    std::vector<PrefixedItem<RowStore::Row>> items;
    items.reserve(rows.size());
    for (const RowStore::Row row : rows)
        items.push_back({row});
    prefixSort(
        std::span(items), [this](RowStore::Row row, int part) { return prefix(row, part); },
        [this](RowStore::Row a, RowStore::Row b) { return isLess(a, b); });
    std::transform(items.begin(), items.end(), rows.begin(),
                   [](const auto &sorted) { return sorted.item; });
}

void RowOrder::insert(std::vector<RowStore::Row> added, std::vector<RowStore::Row> &rows) const
{
    const auto less = [this](RowStore::Row a, RowStore::Row b) { return isLess(a, b); };
    std::sort(added.begin(), added.end(), less);
    const auto before = static_cast<std::ptrdiff_t>(rows.size());
    rows.resize(rows.size() + added.size());
    auto unmoved = rows.begin() + before; // the rows before it have not been moved yet
    auto free = rows.end();
    for (auto row = added.rbegin(); row != added.rend(); ++row) {
        const auto place = std::upper_bound(rows.begin(), unmoved, *row, less);
        free = std::move_backward(place, unmoved, free);
        *--free = *row;
        unmoved = place;
    }
}
