#include "import/GroupCommit.h"

#include <QScopeGuard>
#include <QThread>

namespace {

constexpr qint64 groupMilliseconds = 200;
constexpr unsigned long pauseMilliseconds = 3; // waiting programs try the lock every 2 ms

} // namespace

void GroupCommit::begin(Database &database)
{
    if (m_transaction)
        return;
    m_transaction.emplace(database);
    m_holdsFiles = false;
    m_sinceBegin.start();
}

void GroupCommit::fileStored()
{
    m_holdsFiles = true;
    if (m_isBatch && m_sinceBegin.elapsed() < groupMilliseconds)
        return;
    commit();
    if (m_isBatch)
        QThread::msleep(pauseMilliseconds);
}

void GroupCommit::fileFailed()
{
    if (m_holdsFiles)
        commit();
    else
        m_transaction.reset();
}

void GroupCommit::commit()
{
    if (!m_transaction)
        return;
    // The group ends even if the commit fails: the transaction is then rolled back.
    const auto end = qScopeGuard([this] { m_transaction.reset(); });
    m_transaction->commit();
}

void GroupCommit::endBatch()
{
    m_isBatch = false;
    commit();
}
