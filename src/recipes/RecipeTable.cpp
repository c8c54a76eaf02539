#include "RecipeTable.h"

#include "EmptyText.h"
#include "Inches.h"
#include "SortHeader.h"

RecipeTable::RecipeTable(QWidget *parent)
    : QTreeView(parent)
{
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setHeader(new SortHeader(this));
    header()->setSectionsClickable(true); // which setHeader takes away
    header()->setSortIndicatorShown(true);
}

void RecipeTable::keyboardSearch(const QString &letters)
{
    if (currentIndex().column() > 0) {
        selectionModel()->setCurrentIndex(currentIndex().siblingAtColumn(0),
                                          QItemSelectionModel::NoUpdate);
    }
    QTreeView::keyboardSearch(letters);
}

QSize RecipeTable::sizeHint() const
{
    return inches(*this, 6.43, 3.84);
}

void RecipeTable::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (model())
        paintEmptyText(*this, m_emptyText);
}
