#include "widgets/PlaceholderText.h"

#include <QAbstractItemView>
#include <QPainter>

void paintPlaceholderText(QAbstractItemView &list, const QString &text)
{
    if (list.model()->rowCount() > 0)
        return;
    QPainter painter(list.viewport());
    painter.setPen(list.palette().color(QPalette::PlaceholderText));
    const int margin = list.fontMetrics().height() / 2;
    painter.drawText(list.viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text);
}
