#pragma once

#include <QListView>
#include <QStringList>

// Returns the rows that a list shows, with "*" before a selected one. If there are none, returns
// the description of the list instead.
inline QString shownRows(const QListView &list)
{
    QStringList rows;
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        const bool isSelected = list.selectionModel()->isRowSelected(row);
        rows += (isSelected ? QStringLiteral("*") : QString())
            + list.model()->index(row, 0).data().toString();
    }
    return rows.isEmpty() ? list.accessibleDescription() : rows.join(QStringLiteral(", "));
}
