#pragma once

#include "widgets/TextListView.h"

#include <QStringListModel>

// A list of texts of its own, of which one or none is selected.
class ListBox final : public TextListView
{
    Q_OBJECT

public:
    explicit ListBox(QWidget *parent = nullptr);

    QStringList texts() const { return m_texts.stringList(); }
    void setTexts(const QStringList &texts); // none is selected then
    void append(const QString &text); // comes into view, the selection stays
    void remove(int row); // where it was selected, none is then

    int count() const { return m_texts.rowCount(); }
    int selectedRow() const; // from 0; -1 for none
    QString selectedText() const;
    void selectRow(int row); // comes into view; nothing where there is no such row

Q_SIGNALS:
    // By the user or by the program; again where the user clicks on the one that is selected.
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
