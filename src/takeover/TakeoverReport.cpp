#include "takeover/TakeoverReport.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TakeoverReport)
};

QString number(qint64 value)
{
    return QLocale(QLocale::English).toString(value);
}

} // namespace

bool TakeoverReport::isComplete() const
{
    return std::all_of(tables.begin(), tables.end(),
                       [](const TakenTable &table) { return table.isComplete(); });
}

QStringList TakeoverReport::losses() const
{
    QStringList lines;
    for (const TakenTable &table : tables) {
        if (!table.isComplete())
            lines += Text::tr("%1: %2 of %3")
                         .arg(table.name, number(table.taken),
                              number(std::max(table.stated, table.taken + table.unreadable)));
    }
    return lines;
}

QString TakeoverReport::summary() const
{
    QStringList parts;
    for (const TakenTable &table : tables)
        parts += Text::tr("%1: %2").arg(table.name, number(table.taken));
    return parts.join(", "_L1);
}
