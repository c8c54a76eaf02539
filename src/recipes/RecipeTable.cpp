#include "recipes/RecipeTable.h"

#include "widgets/StandardWidgets.h"
#include "widgets/TextListView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyleOptionHeader>

#include <utility>

namespace {

// A header for narrow columns: captions wrap into two lines, and the sort indicator is drawn above
// them, since beside them it would take their width.
class SortHeader final : public QHeaderView
{
public:
    explicit SortHeader(QWidget *parent)
        : QHeaderView(Qt::Horizontal, parent)
    {
        setStretchLastSection(false);
    }

protected:
    void initStyleOptionForIndex(QStyleOptionHeader *option, int column) const override;
    void paintSection(QPainter *painter, const QRect &rect, int column) const override;
    QSize sectionSizeFromContents(int column) const override;

private:
    int arrowHeight() const
    {
        return style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, this) / 4;
    }
};

void SortHeader::initStyleOptionForIndex(QStyleOptionHeader *option, int column) const
{
    QHeaderView::initStyleOptionForIndex(option, column);
    option->sortIndicator = QStyleOptionHeader::None;
    option->textAlignment |= static_cast<Qt::Alignment>(Qt::TextWordWrap);
}

void SortHeader::paintSection(QPainter *painter, const QRect &rect, int column) const
{
    painter->save();
    QHeaderView::paintSection(painter, rect, column);
    painter->restore();
    if (!isSortIndicatorShown() || column != sortIndicatorSection())
        return;
    QStyleOptionHeader arrow;
    initStyleOption(&arrow);
    arrow.sortIndicator = QStyleOptionHeader::SortDown;
    const int size = 2 * arrowHeight();
    arrow.rect = QRect(rect.center().x() - size / 2, rect.top(), size, size);
    style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &arrow, painter, this);
}

QSize SortHeader::sectionSizeFromContents(int column) const
{
    QSize size = QHeaderView::sectionSizeFromContents(column);
    size.rheight() += fontMetrics().lineSpacing() + 2 * arrowHeight();
    return size;
}

} // namespace

RecipeTable::RecipeTable(QWidget *parent)
    : QTreeView(parent)
    , m_markingDelegate(new TextRowDelegate(this))
    , m_placeholderButton(new QPushButton(this))
{
    setItemDelegate(new TextRowDelegate(this));
    for (int column = 0; column < stretchingColumns; ++column)
        setItemDelegateForColumn(column, m_markingDelegate);
    m_placeholderButton->setObjectName("cmdPlaceholder");
    m_placeholderButton->hide();
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setHeader(new SortHeader(this));
    header()->setSectionsClickable(true); // QTreeView::setHeader() clears this and the next one
    header()->setSortIndicatorShown(true);
    connect(header(), &QHeaderView::sectionResized, this, &RecipeTable::onSectionResized);
    setVerticalScrollMode(ScrollPerItem); // the scroll bar counts rows, see firstVisibleRow()
}

void RecipeTable::keyboardSearch(const QString &letters)
{
    if (currentIndex().column() > 0) {
        selectionModel()->setCurrentIndex(currentIndex().siblingAtColumn(0),
                                          QItemSelectionModel::NoUpdate);
    }
    QTreeView::keyboardSearch(letters);
}

QSize RecipeTable::sizeHint() const
{
    return inches(*this, 6.43, 3.84);
}

void RecipeTable::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (model())
        paintPlaceholderText(*this, m_placeholderText);
}

void RecipeTable::setPlaceholderText(const QString &text)
{
    m_placeholderText = text;
    setAccessibleDescription(text);
    placeButton();
    viewport()->update();
}

void RecipeTable::setPlaceholderButton(const QString &caption)
{
    if (caption.isEmpty() && m_placeholderButton->hasFocus())
        setFocus(); // hide() would pass it to the next control in tab order
    m_placeholderButton->setText(caption);
    m_placeholderButton->setHidden(caption.isEmpty());
    placeButton();
}

void RecipeTable::placeButton()
{
    const QRect text = placeholderRect(*this, m_placeholderText);
    const QSize size = m_placeholderButton->sizeHint();
    const QPoint below(text.center().x() - size.width() / 2, text.bottom() + size.height() / 2);
    m_placeholderButton->setGeometry({viewport()->mapTo(this, below), size});
}

void RecipeTable::mark(const SearchQuery &query)
{
    m_markingDelegate->setQuery(query);
    viewport()->update();
}

// Column widths

void RecipeTable::setColumnWidths(const QList<int> &widths)
{
    m_widths = widths;
    for (int column = 0; column < widths.size(); ++column)
        header()->resizeSection(column, automaticWidth(column));
}

int RecipeTable::automaticWidth(int column) const
{
    const int gained = qMax(width() - sizeHint().width(), 0);
    const int shares[stretchingColumns] = {gained / 2, gained - gained / 2};
    return m_widths[column] + (column < stretchingColumns ? shares[column] : 0);
}

// A width that the table does not give to the column is the user's.
void RecipeTable::onSectionResized(int column, int /*oldWidth*/, int width)
{
    if (column < stretchingColumns)
        m_isUserWidth[static_cast<std::size_t>(column)] = width != automaticWidth(column);
}

void RecipeTable::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    placeButton();
    for (int column = 0; column < stretchingColumns; ++column) {
        if (!m_isUserWidth[static_cast<std::size_t>(column)])
            header()->resizeSection(column, automaticWidth(column));
    }
}

// Rows

int RecipeTable::firstVisibleRow() const
{
    return verticalScrollBar()->value();
}

int RecipeTable::rowAt(QPoint globalPosition) const
{
    const QPoint position = viewport()->mapFromGlobal(globalPosition);
    return viewport()->rect().contains(position) ? indexAt(position).row() : -1;
}

void RecipeTable::selectRow(int row)
{
    setAutoScroll(false);
    setCurrentIndex(model()->index(row, 0));
    setAutoScroll(true);
}

void RecipeTable::scrollToRow(int row, int rowsAbove)
{
    executeDelayedItemsLayout(); // sets the range of the scroll bar
    verticalScrollBar()->setValue(row - rowsAbove);
}

// Without QCoreApplication::sendEvent(), whose event filters would take it for a key of the user.
void RecipeTable::moveSelection(Qt::Key key)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    keyPressEvent(&press);
}

void RecipeTable::mousePressEvent(QMouseEvent *event)
{
    if (!std::exchange(m_discardsPress, false))
        QTreeView::mousePressEvent(event);
}

void RecipeTable::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (model()->rowCount() == 0)
        Q_EMIT emptyTableDoubleClicked();
    else
        QTreeView::mouseDoubleClickEvent(event);
}
