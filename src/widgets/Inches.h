#pragma once

#include <QWidget>

// A size on the widget's screen, in the screen's logical inches.
inline QSize inches(const QWidget &widget, double width, double height)
{
    return {qRound(width * widget.logicalDpiX()), qRound(height * widget.logicalDpiY())};
}
