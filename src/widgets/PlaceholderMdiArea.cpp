#include "widgets/PlaceholderMdiArea.h"

#include <QEvent>
#include <QMdiSubWindow>

#include <algorithm>

void PlaceholderMdiArea::setPlaceholder(QWidget *placeholder)
{
    m_placeholder = placeholder;
    m_placeholder->setParent(this); // not the viewport, whose children are windows
    m_placeholder->setGeometry(rect());
    m_placeholder->setFocus();
    m_placeholder->show();
}

void PlaceholderMdiArea::resizeEvent(QResizeEvent *event)
{
    QMdiArea::resizeEvent(event);
    if (m_placeholder)
        m_placeholder->setGeometry(rect());
}

bool PlaceholderMdiArea::eventFilter(QObject *watched, QEvent *event)
{
    const bool isFiltered = QMdiArea::eventFilter(watched, event);
    const bool isChild =
        event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent;
    if (m_placeholder && isChild) {
        const bool isEmpty = !hasVisibleChild();
        const bool appears = isEmpty && m_placeholder->isHidden();
        m_placeholder->setVisible(isEmpty);
        if (appears)
            m_placeholder->setFocus();
    }
    return isFiltered;
}

bool PlaceholderMdiArea::hasVisibleChild() const
{
    const QList<QMdiSubWindow *> children = subWindowList();
    return std::any_of(children.begin(), children.end(),
                       [](const QMdiSubWindow *child) { return !child->isHidden(); });
}
