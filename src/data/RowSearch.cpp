#include "data/RowSearch.h"

#include "data/TextComparison.h"

#include <algorithm>
#include <bit>

namespace {

// Making an index takes as long as some scans, and the next write drops it.
constexpr qsizetype scansBeforeIndex = 4;

std::size_t keyHash(qint64 key)
{
    const quint64 mixed = static_cast<quint64>(key) * 0x9e3779b97f4a7c15U;
    return mixed ^ (mixed >> 32U);
}

} // namespace

SearchKey::SearchKey(FieldValue wanted)
    : value(std::move(wanted))
    , hash(isText() ? textHash(std::get<std::string>(value)) : keyHash(std::get<qint64>(value)))
{
}

bool SearchKey::matches(const Cell &cell) const
{
    if (const auto *wanted = std::get_if<std::string>(&value)) {
        const auto *text = std::get_if<std::string_view>(&cell);
        return text != nullptr && textsEqual(*text, *wanted);
    }
    const auto *integer = std::get_if<qint64>(&cell);
    return integer != nullptr && *integer == std::get<qint64>(value);
}

ColumnIndex::ColumnIndex(int column, bool ofTexts, const RowSet &rows)
    : m_column(column)
    , m_ofTexts(ofTexts)
{
    build(rows);
}

void ColumnIndex::build(const RowSet &rows)
{
    const auto count = static_cast<std::size_t>(rows.size());
    m_chains.assign(std::bit_ceil(count + 1), {});
    m_next.assign(count, none);
    for (qsizetype row = 0; row < rows.size(); ++row)
        link(static_cast<quint32>(row), rows.cell(row, m_column));
}

void ColumnIndex::link(quint32 row, const Cell &cell)
{
    std::size_t hash = 0;
    if (const auto *text = std::get_if<std::string_view>(&cell); text != nullptr && m_ofTexts)
        hash = textHash(*text);
    else if (const auto *key = std::get_if<qint64>(&cell); key != nullptr && !m_ofTexts)
        hash = keyHash(*key);
    else
        return;
    Chain &chain = m_chains[hash & (m_chains.size() - 1)];
    if (chain.first == none)
        chain.first = row;
    else
        m_next[chain.last] = row;
    chain.last = row;
}

void ColumnIndex::append(const RowSet &rows)
{
    if (static_cast<std::size_t>(rows.size()) > m_chains.size()) {
        build(rows);
        return;
    }
    m_next.push_back(none);
    const qsizetype last = rows.size() - 1;
    link(static_cast<quint32>(last), rows.cell(last, m_column));
}

qsizetype ColumnIndex::find(const SearchKey &key, const RowSet &rows, qsizetype from) const
{
    quint32 row = m_chains[key.hash & (m_chains.size() - 1)].first;
    // FindNext() mostly starts right after the last match, whose chain leads to the next one.
    if (from > 0 && key.matches(rows.cell(from - 1, m_column)))
        row = m_next[static_cast<std::size_t>(from - 1)];
    for (; row != none; row = m_next[row]) {
        if (row >= from && key.matches(rows.cell(row, m_column)))
            return row;
    }
    return -1;
}

qsizetype RowSearch::find(const QString &criteria, qsizetype from)
{
    if (!m_prepared || m_prepared->criteria != criteria) {
        m_prepared = prepare(Criterion::parse(criteria));
        m_prepared->criteria = criteria;
    }
    return findPrepared(from);
}

qsizetype RowSearch::find(Criterion criterion, qsizetype from)
{
    m_prepared = prepare(std::move(criterion));
    return findPrepared(from);
}

qsizetype RowSearch::findPrepared(qsizetype from)
{
    if (m_prepared->isPattern || m_rows.isLongText(m_prepared->column))
        return scan(from);

    SearchedColumn &searched = searchedColumn();
    if (searched.index)
        return searched.index->find(m_prepared->key, m_rows, from);
    if (isKeyAt(searched.lastFound) && searched.lastFound >= from)
        return searched.lastFound;
    const qsizetype found = scan(from);
    searched.lastFound = found;
    searched.scannedRows += 1 + (found < 0 ? m_rows.size() : found) - from;
    if (searched.scannedRows > scansBeforeIndex * m_rows.size())
        searched.index.emplace(searched.column, searched.isText, m_rows);
    return found;
}

RowSearch::Prepared RowSearch::prepare(Criterion criterion) const
{
    const int column = m_rows.columnNumber(QLatin1StringView(criterion.field));
    const auto *text = std::get_if<std::string>(&criterion.value);
    const bool isPattern =
        text != nullptr && criterion.comparison == Comparison::Like && hasPatternCharacters(*text);
    return {{}, column, isPattern, SearchKey(std::move(criterion.value))};
}

RowSearch::SearchedColumn &RowSearch::searchedColumn()
{
    const int column = m_prepared->column;
    const bool isText = m_prepared->key.isText();
    const auto known = std::find_if(m_searched.begin(), m_searched.end(), [&](const auto &other) {
        return other.column == column && other.isText == isText;
    });
    return known != m_searched.end()
        ? *known
        : m_searched.emplace_back(SearchedColumn{.column = column, .isText = isText});
}

// Windows look for the recipe that they show again and again.
bool RowSearch::isKeyAt(qsizetype row) const
{
    const SourceQuery &query = m_rows.query();
    return row >= 0 && row < m_rows.size() && query.isUpdatable() && query.table().hasKey
        && m_prepared->column == query.keyColumn()
        && m_prepared->key.matches(m_rows.cell(row, m_prepared->column));
}

qsizetype RowSearch::scan(qsizetype from) const
{
    const auto matches = [this](const Cell &cell) {
        if (!m_prepared->isPattern)
            return m_prepared->key.matches(cell);
        const auto *text = std::get_if<std::string_view>(&cell);
        return text != nullptr && textMatches(*text, std::get<std::string>(m_prepared->key.value));
    };
    const int column = m_prepared->column;
    const bool isLongText = m_rows.isLongText(column);
    for (qsizetype row = from; row < m_rows.size(); ++row) {
        if (matches(isLongText ? m_rows.longText(m_rows.key(row)) : m_rows.cell(row, column)))
            return row;
    }
    return -1;
}

void RowSearch::rowAppended()
{
    for (SearchedColumn &searched : m_searched) {
        if (searched.index)
            searched.index->append(m_rows);
    }
}

void RowSearch::clear()
{
    m_prepared.reset();
    m_searched.clear();
}
