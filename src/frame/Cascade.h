#pragma once

#include <QRect>

// Where the number-th window of that size goes, each one step further down than the one before and
// from the top again where it would stand out of the area. Larger than the area is cut to it.
QRect cascaded(int number, QSize size, QSize area, int step);

// The rectangle moved, and only where that is not enough cut, so that it lies in the area.
QRect constrainedTo(QRect rect, QSize area);
