#include "frame/ErrorBoundary.h"

#include "interaction/ControlCharacters.h"
#include "interaction/Interaction.h"

LoadError::LoadError(const QString &windowTitle, const std::exception &reason)
    : std::runtime_error(reason.what())
    , m_windowTitle(windowTitle)
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
    } catch (const LoadError &failure) {
        report(failure.windowTitle(), failure);
    } catch (const std::exception &failure) {
        report(windowTitle, failure);
    }
    return false;
}

void ErrorBoundary::report(const QString &windowTitle, const std::exception &failure) const
{
    m_interaction.showError(tr("Error"),
                            tr("Something went wrong in \"%1\":\n%2")
                                .arg(excerpt(windowTitle), QString::fromUtf8(failure.what())));
}
