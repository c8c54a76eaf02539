#pragma once

#include "data/DatabaseCopies.h"

#include <QDate>
#include <QString>

#include <utility>

// Sees to it that a recipe database is copied before the first write of a day, also if the program
// runs past midnight.
class DailyCopy
{
public:
    explicit DailyCopy(const QString &databasePath)
        : m_copies(databasePath)
    {
    }

    // Returns whether make() is to be called before anything is written on this day. A copy that
    // could not be made is not tried again on that day: large databases take long.
    bool isDue(QDate today) const { return m_failedOn != today && !m_copies.hasCopyOf(today); }

    // Calls DatabaseCopies::makeCopy(). A failure must not stop the work, and no box may be shown
    // while the database is locked, so its text is kept for takeFailure().
    void make(DatabaseFile &database, QDate today);

    // Returns the text of the first failure of this run, once; otherwise an empty text.
    QString takeFailure() { return std::exchange(m_failure, {}); }

private:
    DatabaseCopies m_copies;
    QDate m_failedOn;
    QString m_failure;
};
