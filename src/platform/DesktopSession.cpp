#include "DesktopSession.h"

#include <QtGlobal>

#include <algorithm>
#include <array>

namespace platform {

bool hasDesktop()
{
    constexpr std::array names = {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"};
    return std::any_of(names.begin(), names.end(),
                       [](const char *name) { return !qEnvironmentVariableIsEmpty(name); });
}

} // namespace platform
