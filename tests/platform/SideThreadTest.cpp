// A thread beside the one that makes it.
#include "platform/SideThread.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(SideThreadTest, TheWorkIsDoneByAnotherThreadBeforeTheObjectIsGone) {
    std::thread::id worker;
    {
        platform::SideThread thread;
        ASSERT_TRUE(thread.Start([&] { worker = std::this_thread::get_id(); }));
    }
    EXPECT_NE(worker, std::thread::id());
    EXPECT_NE(worker, std::this_thread::get_id());
}

TEST(SideThreadTest, OneThatWasNeverStartedGoesWithoutAWord) { const platform::SideThread thread; }

}  // namespace
