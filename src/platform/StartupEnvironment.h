#pragma once

#include <filesystem>
#include <memory>
#include <span>

struct xcb_connection_t;

// What the program is started with.
namespace platform {

// Returns the path in the arguments (without the program's own name), or an empty path if there is
// none. The arguments are joined by single spaces, because a desktop may pass a path with spaces
// unquoted. A relative path is completed with the current directory. Double quotes around the path
// are removed unless a file with the quotes in its name exists.
std::filesystem::path commandLinePath(std::span<const char *const> arguments);

// If the program brings its own Qt, removes the environment variables with which a desktop or a
// terminal adds the plugins of another Qt, because Qt refuses or crashes on plugins of another
// version. Call before QApplication is created.
void ignorePluginsOfOtherQt();

struct XDisconnect {
    void operator()(xcb_connection_t *connection) const;
};
using XConnection = std::unique_ptr<xcb_connection_t, XDisconnect>;

struct Desktop {
    bool isReachable; // whether the user can see windows

    // Must be kept until Qt has connected, because some X servers reset themselves or end when
    // their last client leaves. Null if Qt does not use an X server.
    XConnection connection;
};

// Finds a display that can be reached, unless QT_QPA_PLATFORM chooses a Qt platform without one.
// Waits a few seconds for an X server that does not answer.
Desktop findDesktop();

} // namespace platform
