#include "widgets/PlaceholderMdiArea.h"

#include <QEvent>
#include <QMdiSubWindow>
#include <QPainter>

#include <algorithm>

void PlaceholderMdiArea::setHint(const QString &hint)
{
    m_hint = hint;
    setAccessibleDescription(hint);
}

void PlaceholderMdiArea::paintEvent(QPaintEvent *event)
{
    QMdiArea::paintEvent(event);
    if (showsChild())
        return;
    QPainter painter(viewport());
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    painter.setFont(large);
    // No role of a palette is meant for text on this background.
    constexpr int medium = 128;
    painter.setPen(background().color().lightness() < medium ? Qt::white : Qt::black);
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
}

bool PlaceholderMdiArea::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
        viewport()->update();
    return QMdiArea::eventFilter(watched, event);
}

bool PlaceholderMdiArea::showsChild() const
{
    const QList<QMdiSubWindow *> children = subWindowList();
    return std::any_of(children.begin(), children.end(),
                       [](const QMdiSubWindow *child) { return !child->isHidden(); });
}
