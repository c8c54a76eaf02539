#include "catalogs/CatalogRows.h"

#include "data/Criterion.h"
#include "data/DatabaseError.h"
#include "data/RecordCursor.h"

QStringList textsOf(RecordCursor &rows, QLatin1StringView field)
{
    const int column = rows.columnNumber(field);
    const qsizetype count = rows.RecordCount();
    QStringList texts;
    texts.reserve(count);
    for (qsizetype row = 0; row < count; ++row)
        texts.append(toVariant(rows.cellAt(row, column)).toString());
    return texts;
}

int rowOfKey(RecordCursor &rows, QLatin1StringView keyField, qint64 key)
{
    const int column = rows.columnNumber(keyField);
    const qsizetype count = rows.RecordCount();
    for (qsizetype row = 0; row < count; ++row) {
        if (rows.cellAt(row, column).integer == key)
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
