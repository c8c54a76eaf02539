#pragma once

#include <chrono>
#include <memory>

// Sees windows come up on the X display that the environment names. Throws std::runtime_error where
// there is none.
class WindowWatch
{
public:
    WindowWatch();
    ~WindowWatch();

    // Returns when a top-level window of the process has been mapped; throws after half a minute.
    void waitForWindowOf(long process);

private:
    struct Server;

    bool isNextEventOf(long process);
    void waitForEvents(std::chrono::steady_clock::time_point end);
    long processOf(unsigned long window);

    const std::unique_ptr<Server> m_server;
};
