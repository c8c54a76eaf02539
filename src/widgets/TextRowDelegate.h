#pragma once

#include <QStyledItemDelegate>

// Draws one-line texts, cut with an ellipsis where they are too long. All rows are as high as the
// list's font asks for, and all texts of a row stand on one line, whatever script they are in.
class TextRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    static int rowHeight(const QFontMetrics &font);
    static int margin(const QWidget &list); // on either side of a text
};
