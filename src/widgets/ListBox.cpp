#include "widgets/ListBox.h"

#include <QMouseEvent>

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
    if (rows == m_model.rows())
        selectionModel()->clear();
    else
        m_model.setRows(rows);
    m_textWhenEmpty = textWhenEmpty;
    describe();
    viewport()->update();
}

// For screen readers, to which the placeholder text is only painted.
void ListBox::describe()
{
    setAccessibleDescription(count() == 0 ? m_textWhenEmpty : QString());
}

void ListBox::append(const Row &row)
{
    m_model.append(row);
    describe();
    scrollTo(m_model.index(count() - 1, 0));
}

// QListView would select a neighbour of a removed row.
void ListBox::remove(int row)
{
    if (row == selectedRow())
        selectionModel()->clear();
    m_model.remove(row);
    describe();
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
    return selected.isEmpty() ? -1 : selected.first().row();
}

QString ListBox::selectedText() const
{
    return m_model.index(selectedRow(), 0).data().toString();
}

void ListBox::selectRow(int row)
{
    if (row >= 0 && row < count())
        setCurrentIndex(m_model.index(row, 0));
}

void ListBox::onSelectionChanged()
{
    if (selectedRow() >= 0)
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
    if (selectedRow() < 0)
        selectionModel()->clearCurrentIndex();
    return QListView::moveCursor(action, modifiers);
}

void ListBox::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    scrollTo(m_model.index(selectedRow(), 0));
}
