#pragma once

#include <QString>

class QAbstractItemView;

// Writes in grey, in the place of the rows that a list does not have, why it has none. To be called
// in the list's paintEvent; nothing where it has rows.
void paintPlaceholderText(QAbstractItemView &list, const QString &text);
