#include "WindowWatch.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <poll.h>

#include <stdexcept>

using namespace std::chrono;

struct WindowWatch::Server {
    Server()
        : display(XOpenDisplay(nullptr))
    {
        if (display == nullptr)
            throw std::runtime_error("there is no X display");
        processProperty = XInternAtom(display, "_NET_WM_PID", False);
    }
    ~Server() { XCloseDisplay(display); }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    Display *const display;
    Atom processProperty;
};

WindowWatch::WindowWatch()
    : m_server(std::make_unique<Server>())
{
    // Windows may be gone before they are asked for; that is no failure.
    XSetErrorHandler([](Display *, XErrorEvent *) { return 0; });
    XSelectInput(m_server->display, DefaultRootWindow(m_server->display), SubstructureNotifyMask);
    XSync(m_server->display, False);
}

WindowWatch::~WindowWatch() = default;

void WindowWatch::waitForWindowOf(long process)
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

void WindowWatch::waitForEvents(steady_clock::time_point end)
{
    pollfd connection{ConnectionNumber(m_server->display), POLLIN, 0};
    const auto left = duration_cast<milliseconds>(end - steady_clock::now()).count();
    if (left <= 0 || poll(&connection, 1, static_cast<int>(left)) <= 0)
        throw std::runtime_error("no window has come up");
}

// A window manager puts the window into a frame of its own before it maps it, so that its mapping
// is seen by asking the window itself.
bool WindowWatch::isNextEventOf(long process)
{
    XEvent event;
    XNextEvent(m_server->display, &event);
    if (event.type == CreateNotify)
        XSelectInput(m_server->display, event.xcreatewindow.window, StructureNotifyMask);
    return event.type == MapNotify && processOf(event.xmap.window) == process;
}

long WindowWatch::processOf(unsigned long window)
{
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(m_server->display, window, m_server->processProperty, 0, 1, False,
                       XA_CARDINAL, &type, &format, &count, &left, &data);
    const std::unique_ptr<unsigned char, decltype(&XFree)> owner(data, XFree);
    // Xlib hands out 32-bit values as longs.
    return count == 1 && format == 32 ? *reinterpret_cast<const long *>(data) : 0;
}
