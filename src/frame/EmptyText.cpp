#include "EmptyText.h"

#include <QAbstractItemView>
#include <QPainter>

void paintEmptyText(QAbstractItemView &list, const QString &text)
{
    if (list.model()->rowCount() > 0)
        return;
    QPainter painter(list.viewport());
    painter.setPen(list.palette().color(QPalette::PlaceholderText));
    const int margin = list.fontMetrics().height() / 2;
    painter.drawText(list.viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text);
}
