#include "Boundary.h"

#include "Doorway.h"

#include <QCoreApplication>

LoadFailure::LoadFailure(const QString &window, const std::exception &reason)
    : std::runtime_error(reason.what())
    , m_window(window)
{
}

Boundary::Boundary(Doorway &doorway)
    : m_doorway(doorway)
{
}

bool Boundary::run(const QString &windowTitle, const std::function<void()> &handler) const
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

void Boundary::tell(const QString &windowTitle, const std::exception &failure) const
{
    const QString text =
        QCoreApplication::translate("Boundary", "Something went wrong in \"%1\":\n%2");
    m_doorway.show({.text = text.arg(windowTitle, QString::fromUtf8(failure.what())),
                    .title = QCoreApplication::translate("Boundary", "Error"),
                    .icon = Icon::Exclamation});
}
