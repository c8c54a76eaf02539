#include "widgets/PlaceholderMdiArea.h"

#include <QEvent>
#include <QMdiSubWindow>
#include <QPainter>

#include <algorithm>

void PlaceholderMdiArea::setPlaceholderText(const QString &text)
{
    m_placeholderText = text;
    setAccessibleDescription(text);
}

void PlaceholderMdiArea::paintEvent(QPaintEvent *event)
{
    QMdiArea::paintEvent(event);
    if (hasVisibleChild())
        return;
    QPainter painter(viewport());
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    painter.setFont(large);
    // QPalette has no role for text on the background of a QMdiArea.
    constexpr int medium = 128;
    painter.setPen(background().color().lightness() < medium ? Qt::white : Qt::black);
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_placeholderText);
}

bool PlaceholderMdiArea::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
        viewport()->update();
    return QMdiArea::eventFilter(watched, event);
}

bool PlaceholderMdiArea::hasVisibleChild() const
{
    const QList<QMdiSubWindow *> children = subWindowList();
    return std::any_of(children.begin(), children.end(),
                       [](const QMdiSubWindow *child) { return !child->isHidden(); });
}
