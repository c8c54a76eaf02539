#include "widgets/ListBoxModel.h"

void ListBoxModel::setRows(const QList<Row> &rows)
{
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

void ListBoxModel::append(const Row &row)
{
    const int last = rowCount();
    beginInsertRows({}, last, last);
    m_rows.append(row);
    endInsertRows();
}

void ListBoxModel::remove(int row)
{
    beginRemoveRows({}, row, row);
    m_rows.removeAt(row);
    endRemoveRows();
}

int ListBoxModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

// Rows are also replaced while the view selects one. The view then still uses the index of that
// row, which may be beyond the last one.
QVariant ListBoxModel::data(const QModelIndex &index, int role) const
{
    const bool exists = index.row() >= 0 && index.row() < m_rows.size();
    return exists && role == Qt::DisplayRole ? QVariant(m_rows[index.row()].text) : QVariant();
}
