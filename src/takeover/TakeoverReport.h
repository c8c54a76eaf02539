#pragma once

#include "data/Schema.h"

#include <QString>
#include <QStringList>

#include <array>

// How much of a table of the old file has been taken over.
struct TakenTable {
    QString name;
    qint64 taken = 0; // rows in the new file
    qint64 stated = 0; // rows that the old file counts; fewer than it has after an unclean end
    qint64 unreadable = 0; // rows and pages that are damaged

    bool isComplete() const { return unreadable == 0 && taken >= stated; }
};

// What the user is told of a takeover.
struct TakeoverReport {
    std::array<TakenTable, tableCount> tables;
    QStringList notes; // complete sentences on what differs from the old file or needs a look

    // Whether every row of the old file is in the new one.
    bool isComplete() const;

    // The tables of which rows are lost, such as "Recipes: 212 of 215".
    QStringList losses() const;

    // What is in the new file, in one line: "Recipes: 215, Ingredients: 340, ...".
    QString summary() const;
};
