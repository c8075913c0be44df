#include "platform/SideThread.h"

#include <pthread.h>
#include <sched.h>

#include <utility>

namespace platform {

namespace {

// The cores that this thread may run on; none if that can't be told.
cpu_set_t Cores() {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    if (sched_getaffinity(0, sizeof cores, &cores) != 0) CPU_ZERO(&cores);
    return cores;
}

cpu_set_t Without(cpu_set_t cores, int core) {
    if (core >= 0) CPU_CLR(static_cast<std::size_t>(core), &cores);
    return cores;
}

}  // namespace

class SideThread::Native {
public:
    explicit Native(std::function<void()> work) : m_work(std::move(work)) {}
    ~Native() {
        if (m_isStarted) pthread_join(m_thread, nullptr);
    }
    Native(const Native&) = delete;
    Native& operator=(const Native&) = delete;

    bool Start() {
        pthread_attr_t attributes;
        if (pthread_attr_init(&attributes) != 0) return false;
        const cpu_set_t others = Without(m_cores, sched_getcpu());
        if (CPU_COUNT(&others) > 0) {
            pthread_attr_setaffinity_np(&attributes, sizeof others, &others);
        }
        m_isStarted = pthread_create(&m_thread, &attributes, Run, this) == 0;
        pthread_attr_destroy(&attributes);
        return m_isStarted;
    }

private:
    // From its beginning on it may run anywhere.
    static void* Run(void* self) {
        const auto& native = *static_cast<const Native*>(self);
        pthread_setaffinity_np(pthread_self(), sizeof native.m_cores, &native.m_cores);
        native.m_work();
        return nullptr;
    }

    const std::function<void()> m_work;
    const cpu_set_t m_cores = Cores();
    pthread_t m_thread{};
    bool m_isStarted = false;
};

SideThread::SideThread() = default;
SideThread::~SideThread() = default;

bool SideThread::Start(std::function<void()> work) {
    m_native = std::make_unique<Native>(std::move(work));
    return m_native->Start();
}

}  // namespace platform
