#pragma once

class QComboBox;
class QVariant;

// Selects the entry whose position is stored; none where the stored value is no position in the
// list.
void selectStored(QComboBox &list, const QVariant &stored);
