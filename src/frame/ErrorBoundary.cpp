#include "frame/ErrorBoundary.h"

#include "interaction/Interaction.h"

#include <QCoreApplication>

LoadFailure::LoadFailure(const QString &window, const std::exception &reason)
    : std::runtime_error(reason.what())
    , m_window(window)
{
}

ErrorBoundary::ErrorBoundary(Interaction &interaction)
    : m_interaction(interaction)
{
}

bool ErrorBoundary::run(const QString &windowTitle, const std::function<void()> &handler) const
{
    try {
        handler();
        return true;
    } catch (const LoadFailure &failure) {
        tell(failure.window(), failure);
    } catch (const std::exception &failure) {
        tell(windowTitle, failure);
    }
    return false;
}

void ErrorBoundary::tell(const QString &windowTitle, const std::exception &failure) const
{
    const QString text =
        QCoreApplication::translate("ErrorBoundary", "Something went wrong in \"%1\":\n%2");
    m_interaction.showError(QCoreApplication::translate("ErrorBoundary", "Error"),
                            text.arg(windowTitle, QString::fromUtf8(failure.what())));
}
