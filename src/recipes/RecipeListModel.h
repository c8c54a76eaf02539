#pragma once

#include <QAbstractTableModel>

#include <array>
#include <vector>

class RecordCursor;

// The rows of a cursor over recipes, sorted by the texts of one column. The model stores no texts:
// a view reads a cell when it shows it.
class RecipeListModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { RecipeName, Description, IngredientCount, Serves };
    static constexpr int columns = 4;

    using QAbstractTableModel::QAbstractTableModel;

    // Detaches the model from the cursor. Must be called before the cursor is requeried.
    void clear();
    // Shows the cursor's rows, sorted by sortColumn(), and reads from the cursor until clear() is
    // called. Throws DatabaseError if the rows cannot be read; the model is empty then.
    void show(RecordCursor &recipes);

    // Sorts in ascending order, whatever `order` says. Numbers are compared as texts; rows with
    // equal texts keep the cursor's order.
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
    std::vector<int> m_order; // the cursor's row for each row of the model
    int m_generation = 0; // of the cursor's rows that m_order refers to
};
