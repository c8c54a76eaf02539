#pragma once

#include <QAbstractTableModel>

#include <array>
#include <vector>

class RowSet;

// The rows of the recipe list, sorted by the text of one column. The model holds no texts; it looks
// up a cell whenever a view asks for it.
class RecipeListModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { RecipeName, Description, IngredientCount, Serves };
    static constexpr int columns = 4;

    using QAbstractTableModel::QAbstractTableModel;

    // Detaches the model from the rows. To be called before their cursor is requeried.
    void clear();

    // Shows the rows, which must have been read, sorted by the column that was sorted by last.
    void show(const RowSet &rows);

    // Whether it shows rows, of which there may be 0.
    bool isRead() const { return m_rows; }

    // The order is always ascending. Numbers are compared as texts; rows with equal texts keep the
    // order of the row set.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    int sortColumn() const { return m_sortColumn; }

    qint64 recipeIdAt(int row) const; // 0 if there is no such row
    int rowOf(qint64 recipeId) const; // -1 if there is no such recipe

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    std::vector<int> sortedRows(const RowSet &rows, int column) const;
    QVariant value(int row, int rowSetColumn) const;

    const RowSet *m_rows = nullptr;
    std::array<int, columns> m_rowSetColumns{};
    int m_idColumn = 0;
    int m_sortColumn = RecipeName;
    std::vector<int> m_order; // for each row shown, its number in the row set
    int m_generation = 0; // of the row set that m_order belongs to
};
