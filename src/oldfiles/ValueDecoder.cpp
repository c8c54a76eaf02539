#include "oldfiles/ValueDecoder.h"

#include "oldfiles/Utf16.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace oldfiles {
namespace {

Value numberValue(double number)
{
    constexpr double limit = 9223372036854775808.0; // 2^63, the first beyond the integers
    if (number >= -limit && number < limit && std::trunc(number) == number)
        return static_cast<qint64>(number);
    return number;
}

// The number that a decimal text means; it may have an exponent.
Value parsedValue(std::string_view decimal)
{
    double number = 0;
    const auto [end, error] =
        std::from_chars(decimal.data(), decimal.data() + decimal.size(), number);
    require(error == std::errc());
    return numberValue(number);
}

// A float as it is converted to a double is 4.19999980926514 when the cook has entered 4.2.
Value singleValue(float number)
{
    std::array<char, 32> decimal; // NOLINT(cppcoreguidelines-pro-type-member-init): is filled
    const auto [end, error] = std::to_chars(decimal.begin(), decimal.end(), number);
    return parsedValue({decimal.begin(), end});
}

// The digits with a point before the last `scale` of them.
Value scaledValue(std::string digits, std::size_t scale)
{
    std::size_t zeros = 0; // at the end, which the scale takes back
    while (zeros < scale && digits.size() > 1 && digits.back() == '0') {
        digits.pop_back();
        ++zeros;
    }
    qint64 whole = 0;
    const char *const end = digits.data() + digits.size();
    if (zeros == scale && std::from_chars(digits.data(), end, whole).ec == std::errc())
        return whole;
    return parsedValue(digits + "e-" + std::to_string(scale - zeros));
}

Value moneyValue(qint64 stored)
{
    constexpr std::size_t scale = 4;
    return scaledValue(std::to_string(stored), scale);
}

// A byte whose highest bit is the sign, then four parts of the digits from the highest.
Value decimalValue(Bytes stored, std::size_t scale)
{
    constexpr quint8 negative = 0x80;
    constexpr quint64 ten = 10;
    std::array<quint32, 4> parts{};
    for (std::size_t i = 0; i < parts.size(); ++i)
        parts[i] = stored.read<quint32>(1 + i * sizeof(quint32));
    std::string digits;
    do {
        quint64 rest = 0;
        for (quint32 &part : parts) {
            const quint64 dividend = rest << 32U | part;
            part = static_cast<quint32>(dividend / ten);
            rest = dividend % ten;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + rest));
    } while (parts != std::array<quint32, 4>{});
    if (digits != "0" && (stored.read<quint8>(0) & negative) != 0)
        digits.insert(digits.begin(), '-');
    return scaledValue(std::move(digits), scale);
}

bool isText(ColumnType type)
{
    return type == ColumnType::Text || type == ColumnType::Memo;
}

// In bytes. A text among the fixed values is as long as its column.
std::size_t fixedSize(const StoredColumn &column)
{
    switch (column.type) {
    case ColumnType::YesNo:
        return 0;
    case ColumnType::Byte:
        return sizeof(quint8);
    case ColumnType::Integer:
        return sizeof(qint16);
    case ColumnType::LongInteger:
        return sizeof(qint32);
    case ColumnType::Single:
        return sizeof(float);
    case ColumnType::Money:
    case ColumnType::Double:
    case ColumnType::BigInteger:
        return sizeof(qint64);
    case ColumnType::Decimal:
        return 1 + 4 * sizeof(quint32); // NOLINT(readability-magic-numbers): see decimalValue()
    case ColumnType::Text:
    case ColumnType::Memo:
        return column.size;
    }
    return 0;
}

Value fixedValue(Bytes stored, const StoredColumn &column)
{
    switch (column.type) {
    case ColumnType::Byte:
        return qint64(stored.read<quint8>(0));
    case ColumnType::Integer:
        return qint64(stored.read<qint16>(0));
    case ColumnType::LongInteger:
        return qint64(stored.read<qint32>(0));
    case ColumnType::BigInteger:
        return stored.read<qint64>(0);
    case ColumnType::Money:
        return moneyValue(stored.read<qint64>(0));
    case ColumnType::Single:
        return singleValue(std::bit_cast<float>(stored.read<quint32>(0)));
    case ColumnType::Double:
        return numberValue(std::bit_cast<double>(stored.read<quint64>(0)));
    case ColumnType::Decimal:
        return decimalValue(stored, column.scale);
    default:
        return std::monostate();
    }
}

// The kinds of a long value, in the two highest bits of its length.
constexpr unsigned kindShift = 30;
constexpr quint32 lengthMask = (1U << kindShift) - 1;
constexpr quint32 inPieces = 0;
constexpr quint32 inOneRow = 1;
constexpr quint32 inTheRow = 2;
constexpr std::size_t pointerAt = 4;
constexpr std::size_t longValueHead = 12;

// A text is held in memory several times while it is decoded and written. One beyond this length is
// damage: no cook has typed it.
constexpr std::size_t mostLetters = 8U << 20U;

} // namespace

ValueDecoder::ValueDecoder(const PageFile &file, const TableDefinition &table, VisitedRows &visited)
    : m_file(file)
    , m_table(table)
    , m_visited(visited)
    , m_texts(table.columns.size())
{
}

Value ValueDecoder::decode(const RowLayout &row, std::size_t number)
{
    const StoredColumn &column = m_table.columns[number];
    const bool hasValue = row.hasValue(column);
    if (column.type == ColumnType::YesNo)
        return hasValue;
    if (!hasValue)
        return std::monostate();
    const std::optional<Bytes> stored = row.value(column, fixedSize(column));
    if (!stored)
        return std::monostate();
    if (isText(column.type))
        return text(*stored, number);
    require(stored->size() == fixedSize(column));
    const Value value = fixedValue(*stored, column);
    if (column.kind == ValueKind::YesNo)
        return value != Value(qint64(0));
    return value;
}

std::string_view ValueDecoder::text(Bytes stored, std::size_t number)
{
    const StoredColumn &column = m_table.columns[number];
    const Bytes bytes = column.type == ColumnType::Memo ? longValue(stored) : stored;
    std::string &result = m_texts[number];
    result.clear();
    if (column.codePage) {
        column.codePage->append(bytes, result);
    } else if (isCompressed(bytes)) {
        require(bytes.size() <= mostLetters); // each byte becomes up to one letter
        expand(bytes, m_expanded);
        appendUtf16(Bytes(m_expanded), result);
    } else {
        appendUtf16(bytes, result);
    }
    return result;
}

// Returns the bytes of a memo. Short ones are in the row, others on pages of their own.
Bytes ValueDecoder::longValue(Bytes stored)
{
    const auto head = stored.read<quint32>(0);
    const std::size_t length = head & lengthMask;
    const std::size_t letterSize = m_file.format().isJet3 ? sizeof(char) : sizeof(char16_t);
    require(length <= mostLetters * letterSize);
    const RowPointer pointer(stored.read<quint32>(pointerAt));
    const Bytes rest = stored.from(longValueHead);
    switch (head >> kindShift) {
    case inTheRow:
        require(rest.size() == length);
        return rest;
    case inOneRow: {
        const Bytes row = piece(pointer);
        require(row.size() == length);
        return row;
    }
    case inPieces:
        return joinPieces(pointer, length);
    default:
        throw Damage();
    }
}

Bytes ValueDecoder::piece(RowPointer pointer)
{
    const Bytes row =
        m_file.row(pointer, DataPage::longValueOwner, DataPage::RowState::Present, m_page);
    m_visited.visit(pointer);
    return row;
}

// Each piece begins with the pointer to the next one.
Bytes ValueDecoder::joinPieces(RowPointer pointer, std::size_t length)
{
    m_joined.clear();
    m_joined.reserve(length);
    while (!pointer.isNull()) {
        const Bytes row = piece(pointer);
        const Bytes bytes = row.from(sizeof(quint32));
        require(m_joined.size() + bytes.size() <= length);
        m_joined.insert(m_joined.end(), bytes.span().begin(), bytes.span().end());
        pointer = RowPointer(row.read<quint32>(0));
    }
    require(m_joined.size() == length);
    return Bytes(m_joined);
}

} // namespace oldfiles
