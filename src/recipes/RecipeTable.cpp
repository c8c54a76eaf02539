#include "RecipeTable.h"

#include "Inches.h"
#include "SortHeader.h"

#include <QPainter>

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
    if (!model() || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const int margin = fontMetrics().height();
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_emptyText);
}
