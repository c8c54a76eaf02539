#pragma once

#include "widgets/TextListView.h"

#include <QStringListModel>

// A list of texts that it stores itself, of which one or none is selected.
class ListBox final : public TextListView
{
    Q_OBJECT

public:
    explicit ListBox(QWidget *parent = nullptr);

    QStringList texts() const { return m_texts.stringList(); }
    void setTexts(const QStringList &texts); // clears the selection
    void append(const QString &text); // scrolls to it and keeps the selection
    void remove(int row); // if it was selected, none is selected afterwards

    int count() const { return m_texts.rowCount(); }
    int selectedRow() const; // from 0, or -1 if none is selected
    QString selectedText() const; // empty if none is selected
    void selectRow(int row); // and scrolls to it; does nothing if there is no such row

Q_SIGNALS:
    // The user or the program has selected a row, or the user has clicked on the selected one.
    void rowSelected();

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void onSelectionChanged();

    QStringListModel m_texts;
};
