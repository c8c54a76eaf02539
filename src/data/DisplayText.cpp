#include "data/DisplayText.h"

#include <QLocale>

QString displayText(const QVariant &stored)
{
    if (stored.typeId() == QMetaType::Double)
        return QString::number(stored.toDouble(), 'f', QLocale::FloatingPointShortest);
    return stored.toString();
}
