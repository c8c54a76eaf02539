#include "recipes/SortHeader.h"

#include <QPainter>
#include <QStyleOptionHeader>

SortHeader::SortHeader(QWidget *parent)
    : QHeaderView(Qt::Horizontal, parent)
{
    setStretchLastSection(false);
}

int SortHeader::arrowHeight() const
{
    return style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, this) / 4;
}

QSize SortHeader::sectionSizeFromContents(int column) const
{
    QSize size = QHeaderView::sectionSizeFromContents(column);
    size.rheight() += fontMetrics().lineSpacing() + 2 * arrowHeight();
    return size;
}

void SortHeader::initStyleOptionForIndex(QStyleOptionHeader *option, int column) const
{
    QHeaderView::initStyleOptionForIndex(option, column);
    option->sortIndicator = QStyleOptionHeader::None;
    option->textAlignment |= static_cast<Qt::Alignment>(Qt::TextWordWrap);
}

void SortHeader::paintSection(QPainter *painter, const QRect &rect, int column) const
{
    painter->save();
    QHeaderView::paintSection(painter, rect, column);
    painter->restore();
    if (!isSortIndicatorShown() || column != sortIndicatorSection())
        return;
    QStyleOptionHeader arrow;
    initStyleOption(&arrow);
    arrow.sortIndicator = QStyleOptionHeader::SortDown;
    const int size = 2 * arrowHeight();
    arrow.rect = QRect(rect.center().x() - size / 2, rect.top(), size, size);
    style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &arrow, painter, this);
}
