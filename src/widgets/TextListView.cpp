#include "widgets/TextListView.h"

#include "widgets/PlaceholderText.h"
#include "widgets/TextRowDelegate.h"

#include <QHelpEvent>
#include <QToolTip>

using namespace Qt::Literals::StringLiterals;

namespace {

// A row is as wide as the list, however long its text is.
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
    paintPlaceholderText(*this, m_placeholderText);
}

QString TextListView::cutText(const QModelIndex &index) const
{
    const QString text = index.data().toString();
    const int room = visualRect(index).width() - 2 * TextRowDelegate::margin(*this);
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
