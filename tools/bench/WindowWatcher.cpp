#include "WindowWatcher.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <poll.h>

#include <stdexcept>

using namespace std::chrono;

struct WindowWatcher::Server {
    Server()
        : display(XOpenDisplay(nullptr))
    {
        if (display == nullptr)
            throw std::runtime_error("the X display cannot be opened");
        processProperty = XInternAtom(display, "_NET_WM_PID", False);
    }
    ~Server() { XCloseDisplay(display); }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    Display *const display;
    Atom processProperty;
};

WindowWatcher::WindowWatcher()
    : m_server(std::make_unique<Server>())
{
    // A window may be destroyed before its properties are read. Xlib's default handler would then
    // end this process.
    XSetErrorHandler([](Display *, XErrorEvent *) { return 0; });
    XSelectInput(m_server->display, DefaultRootWindow(m_server->display), SubstructureNotifyMask);
    XSync(m_server->display, False);
}

WindowWatcher::~WindowWatcher() = default;

void WindowWatcher::waitForWindowOf(long process)
{
    const auto end = steady_clock::now() + seconds(30);
    while (true) {
        while (XPending(m_server->display) > 0) {
            if (isNextEventOf(process))
                return;
        }
        waitForEvents(end);
    }
}

void WindowWatcher::waitForEvents(steady_clock::time_point end)
{
    pollfd connection{ConnectionNumber(m_server->display), POLLIN, 0};
    const auto left = duration_cast<milliseconds>(end - steady_clock::now()).count();
    if (left <= 0 || poll(&connection, 1, static_cast<int>(left)) <= 0)
        throw std::runtime_error("no window has appeared");
}

// Selects the events of each new window, because the window manager reparents it before it is
// mapped: the root window then no longer receives its MapNotify.
bool WindowWatcher::isNextEventOf(long process)
{
    XEvent event;
    XNextEvent(m_server->display, &event);
    if (event.type == CreateNotify)
        XSelectInput(m_server->display, event.xcreatewindow.window, StructureNotifyMask);
    return event.type == MapNotify && processOf(event.xmap.window) == process;
}

long WindowWatcher::processOf(unsigned long window)
{
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(m_server->display, window, m_server->processProperty, 0, 1, False,
                       XA_CARDINAL, &type, &format, &count, &left, &data);
    const std::unique_ptr<unsigned char, decltype(&XFree)> owner(data, XFree);
    // Xlib returns 32-bit values as longs.
    return count == 1 && format == 32 ? *reinterpret_cast<const long *>(data) : 0;
}
