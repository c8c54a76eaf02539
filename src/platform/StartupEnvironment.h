#pragma once

#include <filesystem>
#include <span>

// What the program is started with.
namespace platform {

// Returns the path in the arguments (without the program's own name), or an empty path if there is
// none. The arguments are joined by single spaces, because a desktop may pass a path with spaces
// unquoted. A relative path is completed with the current directory. Double quotes around the path
// are removed unless a file with the quotes in its name exists.
std::filesystem::path commandLinePath(std::span<const char *const> arguments);

// Returns whether the user can see windows: there is a display, and QT_QPA_PLATFORM does not choose
// a Qt platform without one.
bool hasDesktop();

} // namespace platform
