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

TEST(ClockTest, LocalTimeIsKnownForAnyYearOfACertificate) {
    const SavedVariable zone("TZ");
    SetVariable("TZ", "UTC0");
    tzset();
    const std::tm last = platform::LocalTime(253'402'300'799);
    EXPECT_EQ(last.tm_year, 9999 - 1900);
    EXPECT_EQ(last.tm_mon, 11);
    EXPECT_EQ(last.tm_mday, 31);
    EXPECT_EQ(last.tm_sec, 59);
    const std::tm old = platform::LocalTime(-315'619'200);
    EXPECT_EQ(old.tm_year, 60);
    EXPECT_EQ(old.tm_mon, 0);
    EXPECT_EQ(old.tm_mday, 1);
    EXPECT_EQ(old.tm_hour, 0);
}

TEST(ClockTest, UtcFollowsNoTimeZone) {
    const std::tm utc = platform::UtcTime(86400 + 3600);
    EXPECT_EQ(utc.tm_hour, 1);
    EXPECT_EQ(utc.tm_mday, 2);
    EXPECT_EQ(utc.tm_year, 70);
    EXPECT_EQ(utc.tm_yday, 1);
}

TEST(ClockTest, ALocalTimeIsTurnedBackInAnyYear) {
    const SavedVariable zone("TZ");
    SetVariable("TZ", "CST-8");
    tzset();
    for (const std::time_t time :
         {std::time_t{-2'208'988'800}, std::time_t{-315'619'200}, std::time_t{-1}, std::time_t{0},
          std::time_t{86400}, std::time_t{1'795'253'400}, std::time_t{32'535'216'000},
          std::time_t{253'402'271'999}}) {
        std::tm local = platform::LocalTime(time);
        local.tm_isdst = -1;
        EXPECT_EQ(platform::TimeFromLocal(local), time);
    }
}

}  // namespace
