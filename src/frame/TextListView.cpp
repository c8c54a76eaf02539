#include "TextListView.h"

#include "EmptyText.h"

#include <QHelpEvent>
#include <QStyledItemDelegate>
#include <QToolTip>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int rowSpacing = 4;

// All rows are of one size: as wide as the list, so that a text too long for it is cut with an
// ellipsis, and as high as the list's font asks for, whatever script the text is in.
class RowDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const override
    {
        return {0, option.fontMetrics.lineSpacing() + rowSpacing};
    }
};

} // namespace

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
            rows * (fontMetrics().lineSpacing() + rowSpacing) + 2 * frameWidth()};
}

void TextListView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    paintEmptyText(*this, m_emptyText);
}

QString TextListView::cutText(const QModelIndex &index) const
{
    const QString text = index.data().toString();
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    const int room = visualRect(index).width() - 2 * margin;
    return fontMetrics().horizontalAdvance(text) > room ? text : QString();
}

// Without an event a row only becomes the current one.
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
    const QString text = cutText(indexAt(help.pos()));
    QToolTip::showText(help.globalPos(),
                       text.isEmpty() ? toolTip() : u"<qt>%1</qt>"_s.arg(text.toHtmlEscaped()),
                       viewport());
    return true;
}
