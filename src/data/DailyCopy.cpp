#include "data/DailyCopy.h"

#include "data/DatabaseError.h"

void DailyCopy::make(DatabaseFile &database, QDate today)
{
    try {
        m_copies.makeCopy(database, today);
    } catch (const DatabaseError &failure) {
        if (m_failedOn.isNull())
            m_failure = failure.text();
        m_failedOn = today;
    }
}
