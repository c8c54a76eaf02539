#include "platform/StartupEnvironment.h"

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <chrono>
#include <future>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <xcb/xcb.h>

namespace platform {
namespace {

// Does not normalize the path, so that the user sees it as it was typed.
std::filesystem::path absolutePath(const std::filesystem::path &path)
{
    std::error_code error; // if there is no current directory, the path stays relative
    return path.is_absolute() ? path : std::filesystem::current_path(error) / path;
}

// Returns null if the X server cannot be reached. Connects in another thread, because libxcb waits
// without limit for a server that does not answer.
XConnection connectToXServer()
{
    using namespace std::chrono_literals;
    constexpr auto longestWait = 3s;
    std::promise<XConnection> promise;
    std::future<XConnection> result = promise.get_future();
    std::thread([promise = std::move(promise)]() mutable {
        XConnection connection(xcb_connect(nullptr, nullptr));
        if (xcb_connection_has_error(connection.get()) != 0)
            connection.reset();
        promise.set_value(std::move(connection));
    }).detach();
    return result.wait_for(longestWait) == std::future_status::ready ? result.get() : nullptr;
}

bool waylandServerAnswers()
{
    const QByteArray name = qgetenv("WAYLAND_DISPLAY");
    const QByteArray path = name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || path.size() >= std::ssize(address.sun_path))
        return false;
    std::copy(path.begin(), path.end(), address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const bool isConnected =
        ::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::close(socket);
    return isConnected;
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

void ignorePluginsOfOtherQt()
{
    std::error_code error; // if there is no /proc, the variables stay
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    if (!std::filesystem::exists(folder / "lib/libQt6Core.so.6", error))
        return;
    qunsetenv("QT_PLUGIN_PATH");
    qunsetenv("QT_QPA_PLATFORM_PLUGIN_PATH");
}

void XDisconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

Desktop findDesktop()
{
    // Without a choice Qt tries both, and it aborts the program if it can connect to neither.
    const QByteArray chosen = qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")
        ? QByteArray("wayland;xcb")
        : qgetenv("QT_QPA_PLATFORM");
    for (const QByteArray &platform : chosen.split(';')) {
        const QByteArray name = platform.split(':').constFirst();
        if (name == "xcb") {
            if (XConnection connection = connectToXServer())
                return {true, std::move(connection)};
        } else if (name.startsWith("wayland")) {
            if (waylandServerAnswers())
                return {true, {}};
        } else {
            return {name != "offscreen" && name != "minimal", {}};
        }
    }
    return {false, {}};
}

} // namespace platform
