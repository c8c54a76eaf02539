#include "printing/BusyCursor.h"

#include <QCursor>
#include <QGuiApplication>

void WaitCursor::show()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

void WaitCursor::hide() noexcept
{
    QGuiApplication::restoreOverrideCursor();
}
