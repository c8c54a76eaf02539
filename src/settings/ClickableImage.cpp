#include "settings/ClickableImage.h"

#include <QMouseEvent>
#include <QPainter>

void ClickableImage::setSource(const QString &path)
{
    m_source = path;
    m_image.load(path);
    m_image.setDevicePixelRatio(2);
    updateGeometry();
    update();
}

QSize ClickableImage::sizeHint() const
{
    return m_image.deviceIndependentSize().toSize() + QSize(2, 2); // with a border of one pixel
}

void ClickableImage::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT clicked();
}

// Scales smoothly; a QLabel would drop every other pixel on a screen of low resolution.
void ClickableImage::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect().adjusted(1, 1, -1, -1), m_image);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
