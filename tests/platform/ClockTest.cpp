#include "platform/Clock.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <thread>

namespace {

TEST(ClockTest, TheThreadsIdIsTheSystemsAndDiffersBetweenThreads) {
    EXPECT_EQ(platform::CurrentThreadId(), gettid());
    int other = 0;
    std::thread([&] { other = platform::CurrentThreadId() == gettid() ? gettid() : 0; }).join();
    EXPECT_NE(other, 0);
    EXPECT_NE(other, platform::CurrentThreadId());
}

TEST(ClockTest, AForkedProcessHasAnIdOfItsOwn) {
    ASSERT_EQ(platform::CurrentThreadId(), gettid());
    const pid_t child = fork();
    if (child == 0) _exit(platform::CurrentThreadId() == gettid() ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(ClockTest, MillisecondsNeverGoBack) {
    const int first = platform::MillisecondsSinceStart();
    EXPECT_GE(first, 0);
    EXPECT_GE(platform::MillisecondsSinceStart(), first);
}

TEST(ClockTest, LocalTimeFollowsTheTimeZone) {
    const char* before = std::getenv("TZ");
    const auto saved = before != nullptr ? std::optional<std::string>(before) : std::nullopt;
    setenv("TZ", "CST-8", 1);
    tzset();
    const std::tm local = platform::LocalTime(86400);
    EXPECT_EQ(local.tm_hour, 8);
    EXPECT_EQ(local.tm_mday, 2);
    EXPECT_EQ(local.tm_year, 70);
    if (saved) setenv("TZ", saved->c_str(), 1);
    if (!saved) unsetenv("TZ");
    tzset();
}

}  // namespace
