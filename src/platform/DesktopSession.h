#pragma once

namespace platform {

// True when windows can be shown: a display is named, or Qt's platform is chosen by hand.
bool hasDesktop();

} // namespace platform
