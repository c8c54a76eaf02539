#include "widgets/ListBox.h"

ListBox::ListBox(QWidget *parent)
    : TextListView(parent)
{
    setModel(&m_texts);
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

// QListView would select a neighbour of a removed row.
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

void ListBox::onSelectionChanged()
{
    if (selectedRow() >= 0)
        Q_EMIT rowSelected();
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
    scrollTo(m_texts.index(selectedRow()));
}
