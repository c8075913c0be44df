// The stack of the threads that serve, whatever the system's default.

#include "tools/sealserver/ThreadStack.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include "tests/tools/sealserver/RunningServer.h"
#include "tests/tools/sealserver/StoreFixture.h"

namespace {

constexpr std::size_t kSmallStackBytes = 2u << 20;

class ThreadStackOnLinux : public StoreFixture {
protected:
    ThreadStackOnLinux() { pthread_getattr_default_np(&m_before); }
    ~ThreadStackOnLinux() override {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }

    static void SetDefault(std::size_t bytes) {
        pthread_attr_t attributes;
        pthread_getattr_default_np(&attributes);
        pthread_attr_setstacksize(&attributes, bytes);
        pthread_setattr_default_np(&attributes);
        pthread_attr_destroy(&attributes);
    }
    // Of a thread itself nothing is learnt: it may get a larger stack that another has left behind.
    static std::size_t Default() {
        std::size_t size = 0;
        pthread_attr_t attributes;
        pthread_getattr_default_np(&attributes);
        pthread_attr_getstacksize(&attributes, &size);
        pthread_attr_destroy(&attributes);
        return size;
    }

    pthread_attr_t m_before{};
};

TEST_F(ThreadStackOnLinux, AServerRaisesASmallDefault) {
    SetDefault(kSmallStackBytes);
    { const RunningServer running({}, m_store, ""); }
    EXPECT_EQ(Default(), kServingStackBytes);
}

TEST_F(ThreadStackOnLinux, ALargerDefaultStays) {
    SetDefault(2 * kServingStackBytes);
    RequireServingStack();
    EXPECT_EQ(Default(), 2 * kServingStackBytes);
}

}  // namespace
