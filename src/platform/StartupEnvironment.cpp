#include "platform/StartupEnvironment.h"

#include <QByteArray>
#include <QList>

#include <string>

namespace platform {
namespace {

// Does not normalize the path, so that the user sees it as it was typed.
std::filesystem::path absolutePath(const std::filesystem::path &path)
{
    std::error_code error; // if there is no current directory, the path stays relative
    return path.is_absolute() ? path : std::filesystem::current_path(error) / path;
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
    std::error_code error; // if exists() fails, it returns false
    if (quoted && !std::filesystem::exists(absolutePath(path), error))
        return absolutePath(path.substr(1, path.size() - 2));
    return absolutePath(path);
}

bool hasDesktop()
{
    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    if (chosen.isEmpty())
        return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
            || !qEnvironmentVariableIsEmpty("DISPLAY");
    const QByteArray name = chosen.split(':').constFirst();
    return name != "offscreen" && name != "minimal";
}

} // namespace platform
