#include "tools/sealserver/AskedToEnd.h"

#include <windows.h>

#include <atomic>
#include <system_error>
#include <thread>

namespace {

class Event {
public:
    Event() : m_handle(CreateEventA(nullptr, TRUE, FALSE, nullptr)) {
        if (m_handle == nullptr)
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
    ~Event() { CloseHandle(m_handle); }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    HANDLE Get() const { return m_handle; }
    void Set() const { SetEvent(m_handle); }
    bool IsSet() const { return WaitForSingleObject(m_handle, 0) == WAIT_OBJECT_0; }

private:
    HANDLE m_handle;
};

// The system's threads may come at any time, so it is never given back.
const Event& Asked() {
    static const Event* const asked = new Event;
    return *asked;
}

std::atomic<bool> g_isWatched = false;

// On a thread of the system's own. When it returns from an event that closes the console, logs the
// user off or shuts down, the process is ended there and then; it has a few seconds.
BOOL WINAPI NoteEvent(DWORD event) {
    if (!g_isWatched) return FALSE;
    const bool isFirst = !Asked().IsSet();
    Asked().Set();
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return isFirst ? TRUE : FALSE;
}

// For good: the system runs NoteEvent under the lock that removing it would wait for, and NoteEvent
// may never come back.
void ListenToConsole() {
    static const bool isListening = SetConsoleCtrlHandler(NoteEvent, TRUE) != 0;
    if (!isListening)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

// A thread that waits for an event of the console as long as this lives.
class Watch {
public:
    explicit Watch(const std::function<void()>& stop) : m_stop(stop) {
        ListenToConsole();
        ResetEvent(Asked().Get());
        m_thread = std::thread([this] { Run(); });
        g_isWatched = true;
    }
    ~Watch() {
        g_isWatched = false;
        m_over.Set();
        m_thread.join();
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    void Run() {
        const HANDLE wanted[] = {m_over.Get(), Asked().Get()};
        if (WaitForMultipleObjects(2, wanted, FALSE, INFINITE) != WAIT_OBJECT_0) m_stop();
    }

    const std::function<void()>& m_stop;
    const Event m_over;
    std::thread m_thread;
};

}  // namespace

void RunUntilAskedToEnd(const std::function<void()>& work, const std::function<void()>& stop) {
    const Watch watch(stop);
    work();
}
