// On which cores a thread runs that was made to begin on another one.
#include "platform/SideThread.h"

#include <gtest/gtest.h>
#include <sched.h>

namespace {

cpu_set_t Cores() {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    EXPECT_EQ(sched_getaffinity(0, sizeof cores, &cores), 0);
    return cores;
}

cpu_set_t CoresOfSideThread() {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    {
        platform::SideThread thread;
        EXPECT_TRUE(thread.Start([&] { cores = Cores(); }));
    }
    return cores;
}

// This thread, for as long as it lives, on the core where it is.
class OnOneCore {
public:
    OnOneCore() {
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
        EXPECT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    }
    ~OnOneCore() { sched_setaffinity(0, sizeof m_before, &m_before); }
    OnOneCore(const OnOneCore&) = delete;
    OnOneCore& operator=(const OnOneCore&) = delete;

private:
    const cpu_set_t m_before = Cores();
};

TEST(SideThreadOnLinux, OnceItHasBegunItMayRunWhereverItsMakerMay) {
    const cpu_set_t own = Cores();
    const cpu_set_t cores = CoresOfSideThread();
    EXPECT_TRUE(CPU_EQUAL(&cores, &own));
}

TEST(SideThreadOnLinux, AMakerThatHasOneCoreSharesIt) {
    const OnOneCore one;
    const cpu_set_t own = Cores();
    const cpu_set_t cores = CoresOfSideThread();
    EXPECT_EQ(CPU_COUNT(&cores), 1);
    EXPECT_TRUE(CPU_EQUAL(&cores, &own));
}

}  // namespace
