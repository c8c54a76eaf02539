#include "import/GroupCommit.h"

#include <QScopeGuard>
#include <QThread>

namespace {

constexpr qint64 groupMilliseconds = 200;
constexpr unsigned long pauseMilliseconds = 5; // waiting programs try the lock every 4 ms or less

} // namespace

void GroupCommit::endBatch()
{
    m_isBatch = false;
    rollBack();
}

bool GroupCommit::begin(Database &database)
{
    if (m_transaction)
        return false;
    m_transaction.emplace(database);
    m_sinceBegin.start();
    return true;
}

bool GroupCommit::isDue() const
{
    return m_transaction && (!m_isBatch || m_sinceBegin.elapsed() >= groupMilliseconds);
}

void GroupCommit::commit()
{
    if (!m_transaction)
        return;
    const auto end = qScopeGuard([this] { rollBack(); });
    m_transaction->commit();
}

void GroupCommit::letOthersIn() const
{
    if (m_isBatch)
        QThread::msleep(pauseMilliseconds);
}
