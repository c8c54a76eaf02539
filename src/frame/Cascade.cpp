#include "frame/Cascade.h"

#include <algorithm>

QRect cascaded(int number, QSize size, QSize area, int step)
{
    const QSize fitting = size.boundedTo(area);
    const QSize room = area - fitting;
    const int places = std::min(room.width(), room.height()) / step + 1;
    const int offset = number % places * step;
    return {QPoint(offset, offset), fitting};
}

QRect constrainedTo(QRect rect, QSize area)
{
    const QSize fitting = rect.size().boundedTo(area);
    const QSize room = area - fitting;
    return {QPoint(std::clamp(rect.x(), 0, room.width()), std::clamp(rect.y(), 0, room.height())),
            fitting};
}
