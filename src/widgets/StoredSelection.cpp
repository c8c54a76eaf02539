#include "widgets/StoredSelection.h"

#include <QComboBox>

void selectStored(QComboBox &list, const QVariant &stored)
{
    const bool isWhole =
        stored.typeId() == QMetaType::LongLong || stored.typeId() == QMetaType::Int;
    const qint64 position = isWhole ? stored.toLongLong() : -1;
    list.setCurrentIndex(position >= 0 && position < list.count() ? static_cast<int>(position)
                                                                  : -1);
}
