#pragma once

#include "widgets/TextListView.h"

#include <QListWidget>

// A QListWidget that shows a grey placeholder text while it is empty, also as its description for
// screen readers.
class PlaceholderListWidget final : public QListWidget
{
    Q_OBJECT

public:
    using QListWidget::QListWidget;

    void setPlaceholderText(const QString &text)
    {
        setAccessibleDescription(text);
        viewport()->update();
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QListWidget::paintEvent(event);
        paintPlaceholderText(*this, accessibleDescription());
    }
};
