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

// The count of the old file tells how many rows there were, unless it lags behind.
QString loss(const TakenTable &table)
{
    if (table.taken < table.stated)
        return Text::tr("%1: %2 of %3 can be read.")
            .arg(table.name, number(table.taken), number(table.stated));
    return Text::tr("%1: %2 can be read. Damaged pages: %3, damaged rows: %4.")
        .arg(table.name, number(table.taken), number(table.damagedPages),
             number(table.damagedRows));
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
            lines += loss(table);
    }
    return lines;
}

QString TakeoverReport::summary() const
{
    const std::array<QString, tableCount> names = {
        Text::tr("Recipes"), Text::tr("Ingredients"), Text::tr("Utensils"),
        Text::tr("Ingredients in recipes"), Text::tr("Utensils in recipes")};
    QStringList parts;
    for (std::size_t i = 0; i < tableCount; ++i)
        parts += Text::tr("%1: %2").arg(names.at(i), number(tables.at(i).taken));
    return parts.join(", "_L1);
}
