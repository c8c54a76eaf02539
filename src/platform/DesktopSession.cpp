#include "platform/DesktopSession.h"

#include <QByteArray>
#include <QList>

namespace platform {

bool hasDesktop()
{
    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    if (chosen.isEmpty())
        return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
            || !qEnvironmentVariableIsEmpty("DISPLAY");
    // Nobody could see a box there, nor answer it.
    const QByteArray name = chosen.split(':').constFirst();
    return name != "offscreen" && name != "minimal";
}

} // namespace platform
