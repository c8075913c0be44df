// Pieces of work, with and without another thread.
#include "pdf/SideWork.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

class SideWorkTest : public testing::TestWithParam<bool> {
protected:
    // Begun or not.
    void Begin(CSideWork& work) const {
        if (GetParam()) work.Begin();
    }
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutAThread, SideWorkTest, testing::Bool());

TEST_P(SideWorkTest, EachPieceIsDoneOnceWhenFinishReturns) {
    for (const std::size_t count : {0u, 1u, 2u, 1000u}) {
        std::vector<std::atomic<int>> calls(count);
        CSideWork work(count, [&](std::size_t number) { ++calls[number]; });
        Begin(work);
        work.Finish();
        for (const auto& piece : calls) EXPECT_EQ(piece, 1);
    }
}

TEST_P(SideWorkTest, WhatAPieceThrowsComesOutOfFinishBehindAllOthers) {
    std::atomic<int> calls = 0;
    CSideWork work(100, [&](std::size_t number) {
        ++calls;
        if (number % 10 == 7) throw std::runtime_error("seven");
    });
    Begin(work);
    EXPECT_THROW(work.Finish(), std::runtime_error);
    EXPECT_EQ(calls, 100);
}

TEST(SideWorkWithoutFinishTest, PiecesThatNobodyHasBegunAreNeverDone) {
    std::atomic<int> calls = 0;
    {
        const CSideWork work(3, [&](std::size_t) { ++calls; });
    }
    EXPECT_EQ(calls, 0);
}

TEST(SideWorkWithoutFinishTest, APieceThatHasBegunIsWaitedFor) {
    std::promise<void> begun;
    std::atomic<bool> done = false;
    {
        CSideWork work(1, [&](std::size_t) {
            begun.set_value();
            // Longer than it takes to leave the block.
            for (int i = 0; i < 1000; ++i) std::this_thread::yield();
            done = true;
        });
        work.Begin();
        begun.get_future().wait();
    }
    EXPECT_TRUE(done);
}

TEST(SideWorkWithoutFinishTest, TheThreadDoesWhatItsMakerIsTooBusyFor) {
    std::promise<std::thread::id> worker;
    CSideWork work(1, [&](std::size_t) { worker.set_value(std::this_thread::get_id()); });
    work.Begin();
    EXPECT_NE(worker.get_future().get(), std::this_thread::get_id());
    work.Finish();
}

}  // namespace
