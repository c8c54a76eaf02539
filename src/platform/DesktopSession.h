#pragma once

namespace platform {

// True when windows can be seen: a display is named, or Qt's platform is chosen by hand and is one
// that shows them.
bool hasDesktop();

} // namespace platform
