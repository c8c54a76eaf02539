#include "recipes/RecipeTable.h"

#include "recipes/SortHeader.h"
#include "widgets/StandardWidgets.h"
#include "widgets/TextListView.h"

#include <QResizeEvent>

RecipeTable::RecipeTable(QWidget *parent)
    : QTreeView(parent)
{
    setItemDelegate(new TextRowDelegate(this));
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
        paintPlaceholderText(*this, m_placeholderText);
}

// By what it gains or loses, so that widths which the user has set count on.
void RecipeTable::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    const int first = sizeHint().width();
    const int gained =
        qMax(event->size().width() - first, 0) - qMax(event->oldSize().width() - first, 0);
    header()->resizeSection(0, header()->sectionSize(0) + gained / 2);
    header()->resizeSection(1, header()->sectionSize(1) + gained - gained / 2);
}
