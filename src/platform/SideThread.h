// SideThread.h - a thread for work that another core does meanwhile.
#pragma once

#include <functional>
#include <memory>

namespace platform {

// Begins on another core than its maker's where the system can be told so and the process may use
// one: left to themselves some let a new thread wait until its maker rests, though a core is idle.
class SideThread {
public:
    SideThread();
    // Waits until the work is done.
    ~SideThread();
    SideThread(const SideThread&) = delete;
    SideThread& operator=(const SideThread&) = delete;

    // False if the system makes no thread. `work` must not throw. At most once.
    bool Start(std::function<void()> work);

private:
    class Native;
    std::unique_ptr<Native> m_native;
};

}  // namespace platform
