#pragma once

#include <chrono>
#include <memory>

// Watches the X display in $DISPLAY for new windows. The constructor throws std::runtime_error if
// there is no display.
class WindowWatcher
{
public:
    WindowWatcher();
    ~WindowWatcher();

    // Waits until a top-level window of that process is mapped. Throws std::runtime_error after 30
    // seconds.
    void waitForWindowOf(long process);

private:
    struct Server;

    bool isNextEventOf(long process);
    void waitForEvents(std::chrono::steady_clock::time_point end);
    long processOf(unsigned long window);

    const std::unique_ptr<Server> m_server;
};
