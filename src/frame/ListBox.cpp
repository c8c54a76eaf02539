#include "ListBox.h"

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

ListBox::ListBox(QWidget *parent)
    : QListView(parent)
{
    setModel(&m_texts);
    setItemDelegate(new RowDelegate(this));
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ListBox::onSelectionChanged);
    connect(this, &QListView::clicked, this, &ListBox::onSelectionChanged);
}

void ListBox::setTexts(const QStringList &texts)
{
    m_texts.setStringList(texts);
}

void ListBox::append(const QString &text)
{
    const int row = count();
    m_texts.insertRow(row);
    m_texts.setData(m_texts.index(row), text);
    scrollTo(m_texts.index(row));
}

// Qt would select a neighbour of the row that goes.
void ListBox::remove(int row)
{
    if (row == selectedRow())
        selectionModel()->clear();
    m_texts.removeRow(row);
}

int ListBox::selectedRow() const
{
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.first().row();
}

QString ListBox::selectedText() const
{
    return m_texts.index(selectedRow()).data().toString();
}

void ListBox::selectRow(int row)
{
    if (row >= 0 && row < count())
        setCurrentIndex(m_texts.index(row));
}

QSize ListBox::sizeHint() const
{
    constexpr int characters = 45;
    constexpr int rows = 14;
    return {characters * fontMetrics().averageCharWidth() + 2 * frameWidth(),
            rows * (fontMetrics().lineSpacing() + rowSpacing) + 2 * frameWidth()};
}

void ListBox::onSelectionChanged()
{
    if (selectedRow() >= 0)
        Q_EMIT rowSelected();
}

// No key and no button takes a selection back.
QItemSelectionModel::SelectionFlags ListBox::selectionCommand(const QModelIndex &index,
                                                              const QEvent * /*event*/) const
{
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

// A list that gets the focus makes its first row the current one without selecting it: an arrow
// would then go to the second.
QModelIndex ListBox::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (selectedRow() < 0)
        selectionModel()->clearCurrentIndex();
    return QListView::moveCursor(action, modifiers);
}

void ListBox::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    paintEmptyText(*this, m_emptyText);
}

void ListBox::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    scrollTo(m_texts.index(selectedRow()));
}

QString ListBox::cutText(const QModelIndex &index) const
{
    const QString text = index.data().toString();
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    const int room = visualRect(index).width() - 2 * margin;
    return fontMetrics().horizontalAdvance(text) > room ? text : QString();
}

bool ListBox::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QListView::viewportEvent(event);
    const auto &help = static_cast<const QHelpEvent &>(*event);
    const QString text = cutText(indexAt(help.pos()));
    QToolTip::showText(help.globalPos(),
                       text.isEmpty() ? text : u"<qt>%1</qt>"_s.arg(text.toHtmlEscaped()),
                       viewport());
    return true;
}
