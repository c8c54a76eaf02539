#pragma once

#include <QStringView>

// The text without the blanks at its ends; the space alone is one.
inline QStringView trimSpaces(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}
