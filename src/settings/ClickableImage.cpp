#include "settings/ClickableImage.h"

#include <QMouseEvent>
#include <QPainter>

void ClickableImage::setSource(const QString &path)
{
    m_source = path;
    m_picture.load(path);
    m_picture.setDevicePixelRatio(2);
    updateGeometry();
    update();
}

QSize ClickableImage::sizeHint() const
{
    return m_picture.deviceIndependentSize().toSize() + QSize(2, 2); // with the line around it
}

void ClickableImage::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT clicked();
}

// Smoothly, since a label would drop every other pixel on a usual screen.
void ClickableImage::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect().adjusted(1, 1, -1, -1), m_picture);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
