#include "tools/sealserver/AskedToEnd.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace {

sigset_t SignalsToEnd() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        // One that is waited for would come even where it is ignored.
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
            sigaddset(&signals, signal);
    }
    return signals;
}

class Descriptor {
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {
        if (descriptor < 0) throw std::system_error(errno, std::generic_category());
    }
    ~Descriptor() { close(m_descriptor); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// Held back on the thread that makes it and, from their beginning, on those that it starts.
class HeldSignals {
public:
    HeldSignals() { pthread_sigmask(SIG_BLOCK, &m_signals, &m_former); }
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &m_former, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    const sigset_t& Set() const { return m_signals; }
    // On this thread, but for SIGHUP, which stays held on all of them behind this as well.
    void Release() {
        if (sigismember(&m_signals, SIGHUP) == 1) sigaddset(&m_former, SIGHUP);
        sigset_t released = m_signals;
        sigdelset(&released, SIGHUP);
        pthread_sigmask(SIG_UNBLOCK, &released, nullptr);
    }

private:
    const sigset_t m_signals = SignalsToEnd();
    sigset_t m_former{};
};

// A thread that waits for a signal as long as this lives.
class Watch {
public:
    explicit Watch(const std::function<void()>& stop) : m_stop(stop), m_thread([this] { Run(); }) {}
    ~Watch() {
        eventfd_write(m_over.Get(), 1);
        m_thread.join();
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    void Run() {
        if (WaitFor(m_over, m_asked)) return;
        // Those that came together are one, as a SIGTERM with a SIGHUP right behind it. A further
        // one ends the process, on this thread.
        signalfd_siginfo taken[3];
        if (read(m_asked.Get(), taken, sizeof taken) < 0) return;
        m_held.Release();
        m_stop();
        WaitFor(m_over, m_over);
    }
    // For either; whether it was the first one.
    static bool WaitFor(const Descriptor& first, const Descriptor& second) {
        pollfd wanted[] = {{first.Get(), POLLIN, 0}, {second.Get(), POLLIN, 0}};
        while (poll(wanted, 2, -1) <= 0) continue;
        return wanted[0].revents != 0;
    }

    const std::function<void()>& m_stop;
    HeldSignals m_held;
    const Descriptor m_asked{signalfd(-1, &m_held.Set(), SFD_CLOEXEC)};
    const Descriptor m_over{eventfd(0, EFD_CLOEXEC)};
    std::thread m_thread;
};

}  // namespace

void RunUntilAskedToEnd(const std::function<void()>& work, const std::function<void()>& stop) {
    const Watch watch(stop);
    work();
}
