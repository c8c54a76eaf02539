#pragma once

#include <QAbstractTableModel>

#include <array>
#include <optional>
#include <vector>

class RowSet;

// The rows of the recipe list, sorted by the text of one column. It can be narrowed to some of
// them. The model holds no texts; it looks up a cell whenever a view asks for it.
class RecipeListModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { RecipeName, Description, IngredientCount, Serves };
    static constexpr int columns = 4;

    using QAbstractTableModel::QAbstractTableModel;

    // Detaches the model from the rows. To be called before their cursor is requeried.
    void clear();

    // The keys of the recipes that are shown, in ascending order, or nothing to show all.
    using Keys = std::optional<std::vector<qint64>>;

    // Shows the rows, which must have been read, sorted by the column that was sorted by last.
    void show(const RowSet &rows, const Keys &keys = {});

    // Shows others of the same rows; it must show rows already.
    void narrowTo(const Keys &keys) { show(*m_rows, keys); }
    bool isNarrowed() const { return m_isFound.has_value(); }

    // Whether it shows rows, of which there may be 0.
    bool isRead() const { return m_rows; }

    // How many recipes there are, shown or not.
    int recipeCount() const { return m_rows ? static_cast<int>(m_order.size()) : 0; }

    // The order is always ascending. Numbers are compared as texts; rows with equal texts keep the
    // order of the row set.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    int sortColumn() const { return m_sortColumn; }

    qint64 recipeIdAt(int row) const; // 0 if there is no such row
    int rowOf(qint64 recipeId) const; // -1 if there is no such recipe
    // Returns the first row whose recipe is among these, or -1. The keys must be ascending.
    int firstRowOf(const std::vector<qint64> &recipeIds) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    std::vector<int> sortedRows(const RowSet &rows, int column) const;
    // Returns which rows of the row set have one of the keys.
    std::vector<bool> rowsWith(const std::vector<qint64> &keys, const RowSet &rows) const;
    void narrow();
    const std::vector<int> &shown() const { return m_isFound ? m_found : m_order; }
    QVariant value(int row, int rowSetColumn) const;

    const RowSet *m_rows = nullptr;
    std::array<int, columns> m_rowSetColumns{};
    int m_idColumn = 0;
    int m_sortColumn = RecipeName;
    std::vector<int> m_order; // the numbers of all rows in the row set, sorted
    std::optional<std::vector<bool>> m_isFound; // by number in the row set, while it is narrowed
    std::vector<int> m_found; // the part of m_order that is shown, while it is narrowed
    int m_generation = 0; // of the row set that m_order belongs to
};
