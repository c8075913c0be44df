#include "platform/SideThread.h"

#include <system_error>
#include <thread>
#include <utility>

namespace platform {

// The system finds another core by itself.
class SideThread::Native {
public:
    explicit Native(std::function<void()> work) : m_thread(std::move(work)) {}
    ~Native() { m_thread.join(); }
    Native(const Native&) = delete;
    Native& operator=(const Native&) = delete;

private:
    std::thread m_thread;
};

SideThread::SideThread() = default;
SideThread::~SideThread() = default;

bool SideThread::Start(std::function<void()> work) {
    try {
        m_native = std::make_unique<Native>(std::move(work));
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace platform
