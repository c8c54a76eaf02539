#include "widgets/ListBox.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalBlocker>

#include <utility>

ListBox::ListBox(QWidget *parent)
    : TextListView(parent)
{
    setModel(&m_model);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ListBox::onSelectionChanged);
    connect(this, &QListView::clicked, this, &ListBox::onClicked);
}

QStringList ListBox::texts() const
{
    QStringList texts;
    texts.reserve(count());
    for (const Row &row : m_model.rows())
        texts += row.text;
    return texts;
}

void ListBox::setRows(const QList<Row> &rows)
{
    replaceRows(rows, placeholderText());
}

void ListBox::showUnavailable(const QString &text)
{
    replaceRows({}, text);
}

// Equal rows keep their layout: the catalogs list 10,000 rows again after each save.
void ListBox::replaceRows(const QList<Row> &rows, const QString &textWhenEmpty)
{
    clearSelection();
    if (rows != m_model.rows())
        m_model.setRows(rows);
    m_textWhenEmpty = textWhenEmpty;
    describe();
    viewport()->update();
}

void ListBox::narrow(const SearchQuery &query)
{
    const QSignalBlocker blocker(this);
    const int selected = selectedRow();
    clearSelection();
    m_model.narrow(query);
    qobject_cast<TextRowDelegate *>(itemDelegate())->setQuery(query);
    selectRow(selected);
    describe();
    viewport()->update();
}

QString ListBox::textWhenEmpty() const
{
    return count() == 0 ? m_textWhenEmpty
                        : tr("Nothing found.\nTo see all names again, press Esc.");
}

// For screen readers, to which the placeholder text is only painted.
void ListBox::describe()
{
    setAccessibleDescription(shownCount() == 0 ? textWhenEmpty() : QString());
}

void ListBox::append(const Row &row)
{
    m_model.append(row);
    describe();
    scrollTo(m_model.indexOf(count() - 1));
}

// QListView would select a neighbour of a removed row.
void ListBox::remove(int row)
{
    if (row == selectedRow())
        clearSelection();
    m_model.remove(row);
    if (row < m_hiddenRow)
        --m_hiddenRow;
    describe();
}

QString ListBox::textAt(int row) const
{
    return row >= 0 && row < count() ? m_model.rows()[row].text : QString();
}

qint64 ListBox::keyAt(int row) const
{
    return row >= 0 && row < count() ? m_model.rows()[row].key : 0;
}

int ListBox::rowOf(qint64 key) const
{
    for (int row = 0; row < count(); ++row) {
        if (keyAt(row) == key)
            return row;
    }
    return -1;
}

int ListBox::selectedRow() const
{
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    return selected.isEmpty() ? m_hiddenRow : m_model.rowAt(selected.first());
}

void ListBox::selectRow(int row)
{
    if (row < 0 || row >= count() || row == m_hiddenRow)
        return;
    if (isShown(row)) {
        setCurrentIndex(m_model.indexOf(row));
    } else {
        clearSelection();
        m_hiddenRow = row;
        Q_EMIT rowSelected();
    }
}

void ListBox::clickRow(int row)
{
    if (row == selectedRow() && row >= 0)
        Q_EMIT rowSelected();
    else
        selectRow(row);
}

void ListBox::clearSelection()
{
    m_hiddenRow = -1;
    selectionModel()->clear();
}

int ListBox::nearestShownRow(int row) const
{
    while (row < count() - 1 && !isShown(row))
        ++row;
    while (row >= 0 && !isShown(row))
        --row;
    return row;
}

int ListBox::rowReachedBy(Qt::Key key)
{
    static constexpr std::pair<Qt::Key, CursorAction> actions[] = {
        {Qt::Key_Up, MoveUp},     {Qt::Key_PageUp, MovePageUp},     {Qt::Key_Home, MoveHome},
        {Qt::Key_Down, MoveDown}, {Qt::Key_PageDown, MovePageDown}, {Qt::Key_End, MoveEnd}};
    for (const auto &[moving, action] : actions) {
        if (key == moving)
            return m_model.rowAt(moveCursor(action, Qt::NoModifier));
    }
    return -1;
}

void ListBox::onSelectionChanged()
{
    if (!selectionModel()->hasSelection())
        return;
    m_hiddenRow = -1;
    Q_EMIT rowSelected();
}

// A press on another row has selected it already.
void ListBox::onClicked()
{
    if (m_pressedSelected)
        Q_EMIT rowSelected();
}

void ListBox::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    m_pressedSelected = index.isValid() && selectionModel()->isSelected(index);
    TextListView::mousePressEvent(event);
}

// QAbstractItemView emits doubleClicked() for any mouse button.
void ListBox::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        TextListView::mouseDoubleClickEvent(event);
    else
        mousePressEvent(event);
}

// QListView would let Ctrl+click and Ctrl+Space clear the selection.
QItemSelectionModel::SelectionFlags ListBox::selectionCommand(const QModelIndex &index,
                                                              const QEvent * /*event*/) const
{
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

// QAbstractItemView makes its first row current when it gets the focus, without selecting it. An
// arrow key would then select the second row.
QModelIndex ListBox::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (!selectionModel()->hasSelection())
        selectionModel()->clearCurrentIndex();
    return QListView::moveCursor(action, modifiers);
}

void ListBox::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    scrollTo(m_model.indexOf(selectedRow()));
}
