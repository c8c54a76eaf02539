#include "widgets/TextListView.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int placeholderFlags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;

QPalette::ColorGroup colorGroup(QStyle::State state)
{
    if (!(state & QStyle::State_Enabled))
        return QPalette::Disabled;
    return state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
}

// The palettes of most styles have the same colours for an active and an inactive selection.
void makeSelectionPale(QPalette &palette)
{
    const QColor base = palette.color(QPalette::Base);
    const QColor highlight = palette.color(QPalette::Highlight);
    const auto mixed = [](int of, int with) { return (2 * of + with) / 3; };
    palette.setColor(QPalette::Highlight,
                     {mixed(base.red(), highlight.red()), mixed(base.green(), highlight.green()),
                      mixed(base.blue(), highlight.blue())});
    palette.setBrush(QPalette::HighlightedText, palette.text());
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

// Black on amber can be read and differs from a row, selected or not, in any palette. The line
// below the letters is for palettes whose selection is yellow.
QTextCharFormat markFormat()
{
    constexpr QColor amber(0xff, 0xd5, 0x4f);
    QTextCharFormat format;
    format.setBackground(amber);
    format.setForeground(Qt::black);
    format.setFontUnderline(true);
    return format;
}

// Returns the places of the letters in a text that was elided at its right end. Letters that are
// not shown are marked at the ellipsis.
QList<QTextLayout::FormatRange> marks(const QList<SearchQuery::Range> &found, qsizetype length)
{
    QList<QTextLayout::FormatRange> result;
    for (const SearchQuery::Range &range : found) {
        const qsizetype start = std::min(range.start, length - 1);
        const qsizetype end = std::min(range.start + range.length, length);
        result.append({static_cast<int>(start), static_cast<int>(end - start), markFormat()});
    }
    return result;
}

void drawMarked(QPainter &painter, QPointF baseline, const QString &text,
                const QList<QTextLayout::FormatRange> &marks)
{
    QTextLayout layout(text, painter.font(), painter.device());
    QTextOption option;
    option.setTextDirection(painter.layoutDirection());
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    layout.draw(&painter, baseline - QPointF(0, line.ascent()), marks);
}

// A row is as wide as the list: no text may widen the list's contents.
class RowDelegate final : public TextRowDelegate
{
public:
    using TextRowDelegate::TextRowDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const override
    {
        return {0, rowHeight(option.fontMetrics)};
    }
};

} // namespace

// QStyle centres each text by its own height, which a glyph from another font changes.
void TextRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    if (!item.widget->hasFocus())
        makeSelectionPale(item.palette);
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
    const QPoint baseline(place.x(), place.y() + item.fontMetrics.ascent());
    const QList<SearchQuery::Range> found =
        m_query.isEmpty() ? QList<SearchQuery::Range>() : m_query.found(item.text);
    if (found.isEmpty())
        painter->drawText(baseline, text);
    else
        drawMarked(*painter, baseline, text, marks(found, text.size()));
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

int TextRowDelegate::margin(const QWidget &view)
{
    return view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view) + 1;
}

QRect placeholderRect(const QAbstractItemView &view, const QString &text)
{
    const int margin = view.fontMetrics().height() / 2;
    return view.fontMetrics().boundingRect(
        view.viewport()->rect().adjusted(margin, margin, -margin, -margin), placeholderFlags, text);
}

void paintPlaceholderText(QAbstractItemView &view, const QString &text)
{
    if (view.model()->rowCount() > 0)
        return;
    QPainter painter(view.viewport());
    painter.setPen(view.palette().color(QPalette::PlaceholderText));
    painter.drawText(placeholderRect(view, text), placeholderFlags, text);
    if (view.hasFocus()) {
        painter.setPen(view.palette().color(QPalette::Highlight));
        painter.drawRect(view.viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

TextListView::TextListView(QWidget *parent)
    : QListView(parent)
{
    setItemDelegate(new RowDelegate(this));
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
}

QSize TextListView::sizeHint() const
{
    constexpr int characters = 45;
    constexpr int rows = 14;
    return {characters * fontMetrics().averageCharWidth() + 2 * frameWidth(),
            rows * TextRowDelegate::rowHeight(fontMetrics()) + 2 * frameWidth()};
}

void TextListView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    paintPlaceholderText(*this, textWhenEmpty());
}

QString TextListView::elidedTextAt(QPoint position) const
{
    const QModelIndex index = indexAt(position);
    const QString text = index.data().toString();
    const int room = visualRect(index).width() - 2 * TextRowDelegate::margin(*this);
    return fontMetrics().horizontalAdvance(text) > room ? text : QString();
}

// QListView::keyboardSearch() passes no event: the row becomes the current one, not selected.
QItemSelectionModel::SelectionFlags TextListView::selectionCommand(const QModelIndex &index,
                                                                   const QEvent *event) const
{
    if (selectionMode() == MultiSelection && !event)
        return QItemSelectionModel::NoUpdate;
    return QListView::selectionCommand(index, event);
}

bool TextListView::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QListView::viewportEvent(event);
    const auto &help = static_cast<const QHelpEvent &>(*event);
    const QString text = elidedTextAt(help.pos());
    QToolTip::showText(help.globalPos(),
                       text.isEmpty() ? toolTip() : u"<qt>%1</qt>"_s.arg(text.toHtmlEscaped()),
                       viewport());
    return true;
}
