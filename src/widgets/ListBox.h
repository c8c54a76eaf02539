#pragma once

#include "widgets/ListBoxModel.h"
#include "widgets/TextListView.h"

// A list of texts that it stores itself, of which one or none is selected. Each text has a key, by
// which it is told from others that look the same. The list can be narrowed to the texts that match
// a query. This changes neither the numbers of the rows nor which row is selected.
class ListBox final : public TextListView
{
    Q_OBJECT

public:
    using Row = ListBoxModel::Row;

    explicit ListBox(QWidget *parent = nullptr);

    QStringList texts() const;
    void setRows(const QList<Row> &rows); // clears the selection
    void append(const Row &row); // scrolls to it and keeps the selection
    void remove(int row); // if it was selected, none is selected afterwards
    // Empties the list and shows the text in the place of rows until setRows() is called.
    void showUnavailable(const QString &text);

    int count() const { return static_cast<int>(m_model.rows().size()); }
    QString textAt(int row) const; // empty if there is no such row
    qint64 keyAt(int row) const; // 0 if there is no such row
    void setKeyAt(int row, qint64 key) { m_model.setKey(row, key); }
    int rowOf(qint64 key) const; // from 0, or -1 if no row has the key

    int selectedRow() const; // from 0, or -1 if none is selected
    QString selectedText() const { return textAt(selectedRow()); }
    qint64 selectedKey() const { return keyAt(selectedRow()); }
    void selectRow(int row); // and scrolls to it; does nothing if there is no such row
    void clickRow(int row); // the same, and rowSelected() comes even if it was selected already

    // Shows only the rows that match, and marks what is found; an empty query shows all. Without a
    // match, the list says so.
    void narrow(const SearchQuery &query);
    bool isNarrowed() const { return m_model.isNarrowed(); }
    int shownCount() const { return m_model.rowCount(); }
    bool isShown(int row) const { return m_model.indexOf(row).isValid(); }
    // Returns the first shown row from this one on, else the last one before it, or -1 if no row is
    // shown.
    int nearestShownRow(int row) const;
    // Returns the row that an arrow or page key, Home or End would select, or -1 if there is no
    // such row.
    int rowReachedBy(Qt::Key key);

Q_SIGNALS:
    // The user or the program has selected a row, or the user has clicked on the selected one.
    void rowSelected();

protected:
    QString textWhenEmpty() const override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void replaceRows(const QList<Row> &rows, const QString &textWhenEmpty);
    void clearSelection();
    void describe();
    void onSelectionChanged();
    void onClicked();

    ListBoxModel m_model;
    QString m_textWhenEmpty; // empty until the rows are set: the list may not be empty then
    int m_hiddenRow = -1; // the selected row if it does not match the query
    bool m_pressedSelected = false; // whether the latest press was on the selected row
};
