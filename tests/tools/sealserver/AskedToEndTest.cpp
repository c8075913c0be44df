// Work that comes back by itself.

#include "tools/sealserver/AskedToEnd.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(AskedToEndTest, WorkThatComesBackByItselfIsNotStopped) {
    bool hasWorked = false;
    bool isStopped = false;
    RunUntilAskedToEnd([&hasWorked] { hasWorked = true; }, [&isStopped] { isStopped = true; });
    EXPECT_TRUE(hasWorked);
    EXPECT_FALSE(isStopped);
}

TEST(AskedToEndTest, WhatTheWorkThrowsIsPassedOn) {
    EXPECT_THROW(RunUntilAskedToEnd([] { throw std::runtime_error("work"); }, [] {}),
                 std::runtime_error);
    RunUntilAskedToEnd([] {}, [] {});
}

}  // namespace
