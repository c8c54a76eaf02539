#include "platform/CommandLine.h"

#include <string>

namespace platform {
namespace {

// Not cleaned: the path stays as it was written.
std::filesystem::path fromCurrentDirectory(const std::filesystem::path &path)
{
    std::error_code unknown; // then the path stays relative
    return path.is_absolute() ? path : std::filesystem::current_path(unknown) / path;
}

} // namespace

std::filesystem::path commandLinePath(std::span<const char *const> arguments)
{
    std::string path;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i > 0)
            path += ' ';
        path += arguments[i];
    }
    if (path.empty())
        return {};
    const bool quoted = path.size() > 2 && path.starts_with('"') && path.ends_with('"');
    std::error_code unreachable;
    if (quoted && !std::filesystem::exists(fromCurrentDirectory(path), unreachable))
        return fromCurrentDirectory(path.substr(1, path.size() - 2));
    return fromCurrentDirectory(path);
}

} // namespace platform
