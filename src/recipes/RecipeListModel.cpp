#include "recipes/RecipeListModel.h"

#include "data/DisplayText.h"
#include "data/RecordCursor.h"
#include "data/TextComparison.h"

#include <algorithm>
#include <deque>

using namespace Qt::Literals::StringLiterals;

namespace {

struct SortedRow {
    std::string_view text;
    int row;
};

bool operator<(const SortedRow &a, const SortedRow &b)
{
    const int order = compareTexts(a.text, b.text);
    return order != 0 ? order < 0 : a.row < b.row;
}

bool isTextColumn(int column)
{
    return column == RecipeListModel::RecipeName || column == RecipeListModel::Description;
}

QVariant alignmentOf(int column)
{
    const Qt::Alignment across = isTextColumn(column) ? Qt::AlignLeft : Qt::AlignRight;
    return QVariant::fromValue(across | Qt::AlignVCenter);
}

QString inOneLine(QString text)
{
    text.replace("\r\n"_L1, " "_L1);
    text.replace(u'\r', u' ');
    text.replace(u'\n', u' ');
    return text;
}

// QToolTip takes a text for rich text if it looks like it, and wraps only rich text.
QString toolTip(const QString &text)
{
    constexpr qsizetype longest = 1000;
    const QString shown = text.size() > longest ? text.first(longest) + u"\u2026"_s : text;
    return shown.isEmpty() ? QString() : u"<qt>%1</qt>"_s.arg(shown.toHtmlEscaped());
}

} // namespace

void RecipeListModel::clear()
{
    beginResetModel();
    m_recipes = nullptr;
    endResetModel();
}

void RecipeListModel::show(RecordCursor &recipes)
{
    recipes.RecordCount(); // reads the rows: what follows does not throw
    if (recipes.generation() != m_generation) {
        m_cursorColumns = {
            recipes.columnNumber("RecipeName"_L1), recipes.columnNumber("Description"_L1),
            recipes.columnNumber("CountOfRecipeID"_L1), recipes.columnNumber("Serves"_L1)};
        m_idColumn = recipes.columnNumber("RecipeID"_L1);
        sortRows(recipes);
        m_generation = recipes.generation();
    }
    beginResetModel();
    m_recipes = &recipes;
    endResetModel();
}

void RecipeListModel::sortRows(RecordCursor &recipes)
{
    const int column = m_cursorColumns[static_cast<std::size_t>(m_sortColumn)];
    const auto count = static_cast<int>(recipes.RecordCount());
    std::deque<std::string> numbers; // owns the texts to which the rows refer
    std::vector<SortedRow> rows;
    rows.reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row) {
        const Cell cell = recipes.cellAt(row, column);
        if (cell.type == Cell::Type::Integer || cell.type == Cell::Type::Real)
            rows.push_back({numbers.emplace_back(displayText(toVariant(cell)).toStdString()), row});
        else
            rows.push_back({cell.bytes, row});
    }
    if (!std::is_sorted(rows.begin(), rows.end()))
        std::sort(rows.begin(), rows.end());
    m_order.resize(rows.size());
    std::transform(rows.begin(), rows.end(), m_order.begin(),
                   [](const SortedRow &sorted) { return sorted.row; });
}

void RecipeListModel::sort(int column, Qt::SortOrder /*order*/)
{
    m_sortColumn = column;
    if (!m_recipes)
        return;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const std::vector<int> before = m_order;
    sortRows(*m_recipes);
    const QModelIndexList shown = persistentIndexList();
    for (const QModelIndex &index : shown) {
        const int recipe = before[static_cast<std::size_t>(index.row())];
        const auto place = std::find(m_order.begin(), m_order.end(), recipe);
        changePersistentIndex(
            index, this->index(static_cast<int>(place - m_order.begin()), index.column()));
    }
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QVariant RecipeListModel::cell(int row, int cursorColumn) const
{
    return toVariant(m_recipes->cellAt(m_order[static_cast<std::size_t>(row)], cursorColumn));
}

qint64 RecipeListModel::recipeIdAt(int row) const
{
    return cell(row, m_idColumn).toLongLong();
}

int RecipeListModel::rowCount(const QModelIndex &parent) const
{
    return m_recipes && !parent.isValid() ? static_cast<int>(m_order.size()) : 0;
}

int RecipeListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

QVariant RecipeListModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(index.column());
    if (role != Qt::DisplayRole && !(role == Qt::ToolTipRole && isTextColumn(index.column())))
        return {};
    const int column = m_cursorColumns[static_cast<std::size_t>(index.column())];
    const QString text = displayText(cell(index.row(), column));
    return role == Qt::ToolTipRole ? toolTip(text) : inOneLine(text);
}

QVariant RecipeListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(section);
    if (role == Qt::ToolTipRole)
        return tr("Sort by this column (Ctrl+%1)").arg(section + 1);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case RecipeName:
        return tr("Recipe Name");
    case Description:
        return tr("Description");
    case IngredientCount:
        return tr("# of Ing.");
    case Serves:
        return tr("Serves");
    default:
        return {};
    }
}
