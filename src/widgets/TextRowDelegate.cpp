#include "widgets/TextRowDelegate.h"

#include <QPainter>

namespace {

QPalette::ColorGroup colorGroup(QStyle::State state)
{
    if (!(state & QStyle::State_Enabled))
        return QPalette::Disabled;
    return state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
}

void drawFocus(QPainter &painter, const QStyleOptionViewItem &item)
{
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(item);
    focus.state |= QStyle::State_KeyboardFocusChange | QStyle::State_Item;
    const bool isSelected = item.state & QStyle::State_Selected;
    focus.backgroundColor = item.palette.color(colorGroup(item.state),
                                               isSelected ? QPalette::Highlight : QPalette::Window);
    item.widget->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, item.widget);
}

} // namespace

// The style would centre each text by its own height, which a letter from another font changes.
void TextRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.widget->style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, item.widget);

    const int indent = margin(*item.widget);
    const QRect room = item.rect.adjusted(indent, 0, -indent, 0);
    item.text.replace(QChar::LineSeparator, u' ');
    const QString text = item.fontMetrics.elidedText(item.text, item.textElideMode, room.width());
    const QSize size(item.fontMetrics.horizontalAdvance(text), item.fontMetrics.height());
    const QRect place = QStyle::alignedRect(item.direction, item.displayAlignment, size, room);
    const bool isSelected = item.state & QStyle::State_Selected;
    painter->save();
    painter->setFont(item.font);
    painter->setPen(item.palette.color(colorGroup(item.state),
                                       isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(place.x(), place.y() + item.fontMetrics.ascent(), text);
    painter->restore();

    if (item.state & QStyle::State_HasFocus)
        drawFocus(*painter, item);
}

QSize TextRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QString text = index.data().toString();
    return {option.fontMetrics.horizontalAdvance(text) + 2 * margin(*option.widget),
            rowHeight(option.fontMetrics)};
}

int TextRowDelegate::rowHeight(const QFontMetrics &font)
{
    constexpr int spacing = 4;
    return font.lineSpacing() + spacing;
}

int TextRowDelegate::margin(const QWidget &list)
{
    return list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &list) + 1;
}
