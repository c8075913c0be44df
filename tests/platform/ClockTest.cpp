#include "platform/Clock.h"

#include <gtest/gtest.h>

#include <ctime>
#include <thread>

#include "support/Environment.h"

namespace {

TEST(ClockTest, TheThreadsIdDiffersBetweenThreads) {
    int other = 0;
    std::thread([&] { other = platform::CurrentThreadId(); }).join();
    EXPECT_NE(other, 0);
    EXPECT_NE(other, platform::CurrentThreadId());
}

TEST(ClockTest, MillisecondsNeverGoBack) {
    const int first = platform::MillisecondsSinceStart();
    EXPECT_GE(first, 0);
    EXPECT_GE(platform::MillisecondsSinceStart(), first);
}

TEST(ClockTest, LocalTimeFollowsTheTimeZone) {
    const SavedVariable zone("TZ");
    SetVariable("TZ", "CST-8");
    tzset();
    const std::tm local = platform::LocalTime(86400);
    EXPECT_EQ(local.tm_hour, 8);
    EXPECT_EQ(local.tm_mday, 2);
    EXPECT_EQ(local.tm_year, 70);
}

}  // namespace
