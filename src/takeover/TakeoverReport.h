#pragma once

#include "data/Schema.h"

#include <QString>
#include <QStringList>

#include <array>

// How much of a table of the old file has been taken over.
struct TakenTable {
    QString name;
    qint64 taken = 0; // rows in the new file
    qint64 stated = 0; // rows that the old file counts; after an unclean end, it may have more
    qint64 damagedRows = 0;
    qint64 damagedPages = 0; // with an unknown number of rows

    bool isDamaged() const { return damagedRows > 0 || damagedPages > 0; }
    bool isComplete() const { return !isDamaged() && taken >= stated; }
};

// What the user is told of a takeover.
struct TakeoverReport {
    std::array<TakenTable, tableCount> tables;
    QStringList notes; // complete sentences on what differs from the old file or needs a look
    QStringList damageNotes; // the first ones of `notes`, on damaged pages and wrong counts

    // Whether every row of the old file is in the new one.
    bool isComplete() const;

    // A sentence for each table of which rows are lost, such as "Recipes: 212 of 215 can be read."
    QStringList losses() const;

    // What is in the new file, in one line: "Recipes: 215, Ingredients: 340, ...".
    QString summary() const;
};
