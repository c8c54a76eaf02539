#pragma once

#include <QObject>

class FindBar;
class ListBox;

// Lets the user find rows of a list box by a find bar: narrows the list to what is typed and shows
// how many rows are found. Changes of the selection are left to the window, to which moving on may
// matter.
class ListBoxFinder final : public QObject
{
    Q_OBJECT

public:
    // Both must live as long as the finder, whose parent is the bar.
    ListBoxFinder(FindBar &bar, ListBox &list);

    // Returns the row shown whose text is what is typed, else the first one that begins with it,
    // else the first one; -1 if no row is shown.
    int bestRow() const;

    void setFocus(); // to the open bar, in which the text is selected, or else to the list
    // Empties the bar if the selected row is filtered out. Does not move the focus.
    void revealSelected();

Q_SIGNALS:
    void narrowed(); // what is typed has changed
    void entered(); // Enter was pressed in the field, or repeats while it is held
    void moved(int row); // an arrow or page key in the field leads to this row of the list

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void narrow(const QString &text);
    void showCount();

    FindBar &m_bar;
    ListBox &m_list;
};
