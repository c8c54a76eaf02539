#include "widgets/ListBoxModel.h"

#include <algorithm>

void ListBoxModel::setRows(const QList<Row> &rows)
{
    beginResetModel();
    m_rows = rows;
    findMatches();
    endResetModel();
}

void ListBoxModel::narrow(const SearchQuery &query)
{
    beginResetModel();
    m_query = query;
    findMatches();
    endResetModel();
}

void ListBoxModel::findMatches()
{
    m_matches.reset();
    if (m_query.isEmpty())
        return;
    m_matches.emplace();
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_query.matches(m_rows[row].text))
            m_matches->append(row);
    }
}

void ListBoxModel::append(const Row &row)
{
    if (!m_query.matches(row.text)) {
        m_rows.append(row);
        return;
    }
    const int last = rowCount();
    beginInsertRows({}, last, last);
    if (m_matches)
        m_matches->append(static_cast<int>(m_rows.size()));
    m_rows.append(row);
    endInsertRows();
}

void ListBoxModel::remove(int row)
{
    const QModelIndex index = indexOf(row);
    if (index.isValid())
        beginRemoveRows({}, index.row(), index.row());
    m_rows.removeAt(row);
    if (m_matches) {
        m_matches->removeOne(row);
        for (int &match : *m_matches)
            match -= match > row ? 1 : 0;
    }
    if (index.isValid())
        endRemoveRows();
}

// Rows are also replaced while the view selects one. The view then still uses the index of that
// row, which may be beyond the last one.
int ListBoxModel::rowAt(const QModelIndex &index) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return -1;
    return m_matches ? m_matches->at(index.row()) : index.row();
}

QModelIndex ListBoxModel::indexOf(int row) const
{
    if (!m_matches)
        return index(row, 0);
    const auto found = std::lower_bound(m_matches->begin(), m_matches->end(), row);
    const bool isMatch = found != m_matches->end() && *found == row;
    return isMatch ? index(static_cast<int>(found - m_matches->begin()), 0) : QModelIndex();
}

int ListBoxModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return static_cast<int>(m_matches ? m_matches->size() : m_rows.size());
}

QVariant ListBoxModel::data(const QModelIndex &index, int role) const
{
    const int row = rowAt(index);
    return row >= 0 && role == Qt::DisplayRole ? QVariant(m_rows[row].text) : QVariant();
}
