#pragma once

#include "search/SearchQuery.h"

#include <QAbstractListModel>

#include <optional>

// The rows of a ListBox. A query narrows the model to the rows that match it; their numbers stay.
// QStandardItemModel would need several allocations for each row.
class ListBoxModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    struct Row {
        QString text;
        qint64 key = 0;

        bool operator==(const Row &) const = default;
    };

    using QAbstractListModel::QAbstractListModel;

    // All rows, whether they match the query or not. Row numbers count from 0.
    const QList<Row> &rows() const { return m_rows; }
    void setRows(const QList<Row> &rows); // the query stays
    void append(const Row &row);
    void remove(int row);
    void setKey(int row, qint64 key) { m_rows[row].key = key; }

    void narrow(const SearchQuery &query); // an empty one shows all rows
    bool isNarrowed() const { return m_matches.has_value(); }
    int rowAt(const QModelIndex &index) const; // -1 if there is no such row
    QModelIndex indexOf(int row) const; // not valid if the row does not match the query

    int rowCount(const QModelIndex &parent = {}) const override; // rows that match the query
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    void findMatches();

    QList<Row> m_rows;
    SearchQuery m_query;
    std::optional<QList<int>> m_matches; // the numbers of the matching rows; nothing for all rows
};
