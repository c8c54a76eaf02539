#pragma once

#include <QTest>

#include <tuple>

// Adds rows of values to the data of a test function, which takes them with fetchRow(). The first
// value is the row's name.
template <typename... Values>
void addRows(const QList<std::tuple<QByteArray, Values...>> &rows)
{
    QTest::addColumn<std::tuple<Values...>>("values");
    for (const auto &row : rows)
        std::apply(
            [](const QByteArray &name, const Values &...values) {
                QTest::newRow(name.constData()) << std::tuple<Values...>(values...);
            },
            row);
}

// Returns the values of the current row: const auto [text, number] = fetchRow<QString, int>();
template <typename... Values>
std::tuple<Values...> fetchRow()
{
    using Row = std::tuple<Values...>;
    QFETCH(Row, values);
    return values;
}
