#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "platform/Clock.h"
#include "support/Environment.h"

namespace {

TEST(ClockOnLinux, TheThreadsIdIsTheSystemsAndDiffersBetweenThreads) {
    EXPECT_EQ(platform::CurrentThreadId(), gettid());
    int other = 0;
    std::thread([&] { other = platform::CurrentThreadId() == gettid() ? gettid() : 0; }).join();
    EXPECT_NE(other, 0);
    EXPECT_NE(other, platform::CurrentThreadId());
}

TEST(ClockOnLinux, AForkedProcessHasAnIdOfItsOwn) {
    ASSERT_EQ(platform::CurrentThreadId(), gettid());
    const pid_t child = fork();
    if (child == 0) _exit(platform::CurrentThreadId() == gettid() ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(ClockOnLinux, AZoneThatTheHostSetsLaterHoldsFromThenOn) {
    const SavedVariable zone("TZ");
    SetVariable("TZ", "UTC0");
    EXPECT_EQ(platform::LocalTime(86400).tm_hour, 0);
    SetVariable("TZ", "CST-8");
    EXPECT_EQ(platform::LocalTime(86400).tm_hour, 8);
}

}  // namespace
