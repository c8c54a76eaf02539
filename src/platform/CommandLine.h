#pragma once

#include <filesystem>
#include <span>

namespace platform {

// The path that the program was started with: the arguments (without the program's own name) joined
// by one blank, taken from the current directory when relative. Double quotes around it belong to
// it only if such a file exists. Empty when there is no argument or it is empty.
std::filesystem::path commandLinePath(std::span<const char *const> arguments);

} // namespace platform
