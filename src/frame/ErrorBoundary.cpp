#include "frame/ErrorBoundary.h"

#include "interaction/ControlCharacters.h"
#include "interaction/Interaction.h"

#include <QScopedValueRollback>

#include <new>

LoadError::LoadError(const QString &windowTitle, const std::exception &reason)
    : std::runtime_error(reason.what())
    , m_windowTitle(windowTitle)
    , m_reason(std::current_exception())
{
    if (const auto *inner = dynamic_cast<const LoadError *>(&reason))
        m_reason = inner->m_reason;
}

ErrorBoundary::ErrorBoundary(Interaction &interaction)
    : m_interaction(interaction)
{
}

bool ErrorBoundary::run(const QString &windowTitle, const std::function<void()> &handler) const
{
    bool succeeded = false;
    {
        const QScopedValueRollback depth(m_depth, m_depth + 1);
        succeeded = runAndReport(windowTitle, handler);
    }
    if (m_depth == 0 && m_afterHandler)
        runAndReport(windowTitle, m_afterHandler);
    return succeeded;
}

bool ErrorBoundary::runAndReport(const QString &windowTitle,
                                 const std::function<void()> &handler) const
{
    try {
        handler();
        return true;
    } catch (const LoadError &failure) {
        report(failure.windowTitle(), failure.reason());
    } catch (const std::exception &) {
        report(windowTitle, std::current_exception());
    }
    return false;
}

void ErrorBoundary::report(const QString &windowTitle, const std::exception_ptr &failure) const
{
    bool isHandled = false;
    try {
        isHandled = m_errorHandler && m_errorHandler(windowTitle, failure);
    } catch (const std::exception &) { // the user is told of the first failure
    }
    if (!isHandled)
        m_interaction.showError(tr("Error"), text(windowTitle, reasonOf(failure)));
}

QString ErrorBoundary::reasonOf(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const std::bad_alloc &) {
        return tr("There is not enough memory. Close other windows and programs and try again.");
    } catch (const std::exception &known) {
        return QString::fromUtf8(known.what());
    }
}

QString ErrorBoundary::text(const QString &windowTitle, const QString &reason)
{
    return tr("Something went wrong in \"%1\":\n%2").arg(excerpt(windowTitle), reason);
}
