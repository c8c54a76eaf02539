#include "catalogs/CatalogRows.h"

#include "data/Criterion.h"
#include "data/DatabaseError.h"
#include "data/RecordCursor.h"

QStringList textsOf(RecordCursor &cursor, QLatin1StringView field)
{
    const RowSet &rows = cursor.rows();
    const int column = rows.columnNumber(field);
    QStringList texts;
    texts.reserve(rows.size());
    for (qsizetype row = 0; row < rows.size(); ++row)
        texts.append(toVariant(rows.cell(row, column)).toString());
    return texts;
}

int rowOfKey(RecordCursor &cursor, QLatin1StringView keyField, qint64 key)
{
    const RowSet &rows = cursor.rows();
    const int column = rows.columnNumber(keyField);
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (rows.cell(row, column) == Cell(key))
            return static_cast<int>(row);
    }
    return -1;
}

void goToKey(RecordCursor &rows, QLatin1StringView keyField, qint64 key)
{
    rows.FindFirst(criterion(keyField, key));
    if (rows.NoMatch())
        throw RowNotFound();
}
