#include "MemoryUse.h"

#include <QProcess>

#include <stdexcept>

double memoryUse(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(BENCH_MEMORYUSE), arguments);
    bool isNumber = false;
    const double bytes = process.waitForFinished(-1)
        ? process.readAllStandardOutput().trimmed().toDouble(&isNumber)
        : 0;
    if (!isNumber)
        throw std::runtime_error("memoryuse: " + process.readAllStandardError().toStdString());
    return bytes;
}
