#pragma once

#include <QAbstractTableModel>

#include <array>
#include <vector>

class RecordCursor;

// The rows of a cursor over recipes in the order of one column's texts. It holds no texts: a cell
// is read where it is shown.
class RecipeListModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { RecipeName, Description, IngredientCount, Serves };
    static constexpr int columns = 4;

    using QAbstractTableModel::QAbstractTableModel;

    // Lets go of the rows, which must come before their cursor is requeried.
    void clear();
    // Shows the cursor's rows, sorted by the column that they were last sorted by. Reads, and may
    // throw; the list is empty then.
    void show(RecordCursor &recipes);

    // Always ascending, texts that are equal in the cursor's order, numbers compared as texts.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    int sortColumn() const { return m_sortColumn; }

    qint64 recipeIdAt(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    void sortRows(RecordCursor &recipes);
    QVariant cell(int row, int cursorColumn) const;

    RecordCursor *m_recipes = nullptr;
    std::array<int, columns> m_cursorColumns{};
    int m_idColumn = 0;
    int m_sortColumn = RecipeName;
    std::vector<int> m_order; // the cursor's row for each row shown
    int m_generation = 0; // of the cursor, when the order was made
};
