#pragma once

#include <QAbstractListModel>

// The rows of a ListBox. QStandardItemModel would need several allocations for each of them.
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

    const QList<Row> &rows() const { return m_rows; }
    void setRows(const QList<Row> &rows);
    void append(const Row &row);
    void remove(int row);
    void setKey(int row, qint64 key) { m_rows[row].key = key; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    QList<Row> m_rows;
};
