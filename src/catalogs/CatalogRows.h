#pragma once

#include <QStringList>

class RecordCursor;

// A catalog's rows as its windows list and find them. All of this reads, and throws DatabaseError.

// The field's text of every row, in the cursor's order.
QStringList textsOf(RecordCursor &rows, QLatin1StringView field);

// The number of the row with that key, from 0; -1 where there is none.
int rowOfKey(RecordCursor &rows, QLatin1StringView keyField, qint64 key);

// Makes the row with that key the current one; throws RowNotFound where there is none.
void goToKey(RecordCursor &rows, QLatin1StringView keyField, qint64 key);
