#include "recipes/RecipeListModel.h"

#include "data/FieldValue.h"
#include "data/PrefixSort.h"
#include "data/RowSet.h"
#include "data/TextComparison.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

struct SortedRow {
    std::string_view text;
    int row = 0;
};

bool isLess(const SortedRow &a, const SortedRow &b)
{
    const int order = compareTexts(a.text, b.text);
    return order != 0 ? order < 0 : a.row < b.row;
}

quint64 prefixOf(const SortedRow &row, int part)
{
    return textPrefix(row.text, sizeof(quint64) * static_cast<std::size_t>(part));
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
    m_rows = nullptr;
    endResetModel();
}

void RecipeListModel::show(const RowSet &rows, const Keys &keys)
{
    if (rows.generation() != m_generation) {
        m_rowSetColumns = {rows.columnNumber("RecipeName"_L1), rows.columnNumber("Description"_L1),
                           rows.columnNumber("CountOfRecipeID"_L1), rows.columnNumber("Serves"_L1)};
        m_idColumn = rows.columnNumber("RecipeID"_L1);
        m_order = sortedRows(rows, m_sortColumn);
        m_generation = rows.generation();
    }
    std::optional<std::vector<bool>> isFound;
    if (keys)
        isFound = rowsWith(*keys, rows);
    beginResetModel();
    m_rows = &rows;
    m_isFound = std::move(isFound);
    narrow();
    endResetModel();
}

std::vector<bool> RecipeListModel::rowsWith(const std::vector<qint64> &keys,
                                            const RowSet &rows) const
{
    std::vector<bool> result(static_cast<std::size_t>(rows.size()));
    for (std::size_t row = 0; row < result.size(); ++row) {
        const qint64 key = rows.integer(static_cast<qsizetype>(row), m_idColumn);
        result[row] = std::binary_search(keys.begin(), keys.end(), key);
    }
    return result;
}

void RecipeListModel::narrow()
{
    m_found.clear();
    if (m_isFound) {
        std::copy_if(m_order.begin(), m_order.end(), std::back_inserter(m_found),
                     [&](int row) { return (*m_isFound)[static_cast<std::size_t>(row)]; });
    }
}

std::vector<int> RecipeListModel::sortedRows(const RowSet &rows, int sortColumn) const
{
    const int column = m_rowSetColumns[static_cast<std::size_t>(sortColumn)];
    const auto count = static_cast<int>(rows.size());
    std::deque<std::string> numberTexts; // SortedRow refers to them; a deque does not move them
    std::vector<PrefixedItem<SortedRow>> sorted;
    sorted.reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row) {
        const Cell cell = rows.cell(row, column);
        if (const auto *text = std::get_if<std::string_view>(&cell))
            sorted.push_back({{*text, row}});
        else
            sorted.push_back(
                {{numberTexts.emplace_back(displayText(toVariant(cell)).toStdString()), row}});
    }
    prefixSort(std::span(sorted), prefixOf, isLess);
    std::vector<int> order(sorted.size());
    std::transform(sorted.begin(), sorted.end(), order.begin(),
                   [](const auto &sortedRow) { return sortedRow.item.row; });
    return order;
}

void RecipeListModel::sort(int column, Qt::SortOrder /*order*/)
{
    if (!m_rows) {
        m_sortColumn = column;
        m_generation = 0; // show() must sort
        return;
    }
    // Sorts first: if it throws, no view waits for layoutChanged().
    std::vector<int> order = sortedRows(*m_rows, column);
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    m_sortColumn = column;
    const std::vector<int> before = shown();
    m_order = std::move(order);
    narrow();
    const QModelIndexList indexes = persistentIndexList();
    for (const QModelIndex &index : indexes) {
        const int recipe = before[static_cast<std::size_t>(index.row())];
        const auto place = std::find(shown().begin(), shown().end(), recipe);
        changePersistentIndex(
            index, this->index(static_cast<int>(place - shown().begin()), index.column()));
    }
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QVariant RecipeListModel::value(int row, int rowSetColumn) const
{
    return toVariant(m_rows->cell(shown()[static_cast<std::size_t>(row)], rowSetColumn));
}

qint64 RecipeListModel::recipeIdAt(int row) const
{
    return row >= 0 && row < rowCount() ? value(row, m_idColumn).toLongLong() : 0;
}

int RecipeListModel::rowOf(qint64 recipeId) const
{
    if (!m_rows || recipeId == 0)
        return -1;
    const auto row = std::find_if(shown().begin(), shown().end(), [&](int recipe) {
        return m_rows->integer(recipe, m_idColumn) == recipeId;
    });
    return row == shown().end() ? -1 : static_cast<int>(row - shown().begin());
}

int RecipeListModel::firstRowOf(const std::vector<qint64> &recipeIds) const
{
    if (!m_rows || recipeIds.empty())
        return -1;
    const auto row = std::find_if(shown().begin(), shown().end(), [&](int recipe) {
        return std::binary_search(recipeIds.begin(), recipeIds.end(),
                                  m_rows->integer(recipe, m_idColumn));
    });
    return row == shown().end() ? -1 : static_cast<int>(row - shown().begin());
}

int RecipeListModel::rowCount(const QModelIndex &parent) const
{
    return m_rows && !parent.isValid() ? static_cast<int>(shown().size()) : 0;
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
    const int column = m_rowSetColumns[static_cast<std::size_t>(index.column())];
    const QString text = displayText(value(index.row(), column));
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
