#include "components/transport/HandleTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <set>
#include <vector>

namespace {

class HandleTableTest : public testing::Test {
protected:
    // A context with one request.
    void* Begin(void** context = nullptr) {
        void* const made = m_table.MakeContext();
        EXPECT_NE(made, nullptr);
        m_begun.push_back(made);
        if (context != nullptr) *context = made;
        return m_table.MakeRequest(made);
    }
    void MarkRead(void* request) {
        ASSERT_NE(m_table.OwnerOf(request), nullptr);
        m_table.MarkRead(request);
    }
    // As many contexts as there may be, but for one; none has gone yet.
    void FillUp() {
        for (std::size_t i = m_begun.size(); i < kMostContexts - 1; ++i) {
            ASSERT_NE(m_table.MakeContext(), nullptr);
        }
    }
    // Those of Begin that are still there.
    std::size_t Left() {
        const auto isThere = [this](void* context) { return m_table.FindContext(context); };
        return static_cast<std::size_t>(std::count_if(m_begun.begin(), m_begun.end(), isThere));
    }

    CHandleTable m_table;
    std::vector<void*> m_begun;
};

TEST_F(HandleTableTest, ARequestBelongsToItsContext) {
    void* context = nullptr;
    void* const request = Begin(&context);
    void* const other = Begin();
    EXPECT_EQ(m_table.OwnerOf(request), m_table.FindContext(context));
    EXPECT_NE(m_table.OwnerOf(other), m_table.FindContext(context));
    EXPECT_NE(m_table.FindRequest(request), m_table.FindRequest(other));
}

TEST_F(HandleTableTest, WhatIsNoHandleIsNotFound) {
    void* context = nullptr;
    void* const request = Begin(&context);
    int local = 0;
    for (void* const handle :
         {static_cast<void*>(nullptr), static_cast<void*>(&local), reinterpret_cast<void*>(-1)}) {
        EXPECT_EQ(m_table.FindContext(handle), nullptr);
        EXPECT_EQ(m_table.FindRequest(handle), nullptr);
        EXPECT_EQ(m_table.MakeRequest(handle), nullptr);
    }
    EXPECT_EQ(m_table.FindRequest(context), nullptr);
    EXPECT_EQ(m_table.FindContext(request), nullptr);
}

TEST_F(HandleTableTest, AContextHasALimitedNumberOfRequests) {
    void* const context = m_table.MakeContext();
    std::set<void*> requests;
    for (std::size_t i = 0; i < kMostRequests; ++i) requests.insert(m_table.MakeRequest(context));
    EXPECT_EQ(requests.size(), kMostRequests);
    EXPECT_FALSE(requests.contains(nullptr));
    EXPECT_EQ(m_table.MakeRequest(context), nullptr);
    EXPECT_NE(m_table.MakeRequest(m_table.MakeContext()), nullptr);
}

TEST_F(HandleTableTest, TheOldestOfTooManyContextsGoes) {
    void* first = nullptr;
    void* second = nullptr;
    void* const request = Begin(&first);
    Begin(&second);
    for (std::size_t i = 2; i < kMostContexts; ++i) m_table.MakeContext();
    EXPECT_NE(m_table.FindRequest(request), nullptr);
    m_table.MakeContext();
    EXPECT_EQ(m_table.FindContext(first), nullptr);
    EXPECT_EQ(m_table.FindRequest(request), nullptr);
    EXPECT_EQ(m_table.MakeRequest(first), nullptr);
    EXPECT_NE(m_table.FindContext(second), nullptr);
}

TEST_F(HandleTableTest, AContextWhoseExchangeEndsLateIsYoungerThanThoseBegunMeanwhile) {
    void* const slow = Begin();
    m_table.FindRequest(slow)->state = RequestState::kUnderWay;
    void* const meanwhile = Begin();
    FillUp();
    m_table.Finish(slow, 0, "<a/>");
    m_table.MakeContext();
    m_table.MakeContext();
    ASSERT_NE(m_table.FindRequest(slow), nullptr);
    EXPECT_EQ(m_table.FindRequest(slow)->answer, "<a/>");
    EXPECT_EQ(m_table.FindRequest(meanwhile), nullptr);
    for (std::size_t i = 0; i < kMostContexts; ++i) m_table.MakeContext();
    EXPECT_EQ(m_table.FindRequest(slow), nullptr) << "in the end it goes too";
}

TEST_F(HandleTableTest, AContextWhoseAnswerWasJustReadIsTheYoungest) {
    void* const read = Begin();
    void* const other = Begin();
    FillUp();
    std::async(std::launch::async, [&] { MarkRead(read); }).get();
    m_table.MakeContext();
    m_table.MakeContext();
    EXPECT_NE(m_table.FindRequest(read), nullptr);
    EXPECT_EQ(m_table.FindRequest(other), nullptr);
}

TEST_F(HandleTableTest, AHundredThousandContextsThatNobodyReleasesStayFew) {
    for (int i = 0; i < 100'000; ++i) Begin();
    EXPECT_EQ(Left(), kMostContexts);
}

TEST_F(HandleTableTest, AThreadThatHasReadItsAnswerAndBeginsAnewLeavesOneContext) {
    for (int i = 0; i < 1'000; ++i) {
        void* const request = Begin();
        ASSERT_EQ(Left(), 1u);
        MarkRead(request);
        ASSERT_NE(m_table.FindRequest(request), nullptr);
    }
}

TEST_F(HandleTableTest, AnotherThreadsBeginningLeavesAnAnswerThatWasJustRead) {
    void* const request = Begin();
    MarkRead(request);
    std::async(std::launch::async, [this] { m_table.MakeContext(); }).get();
    EXPECT_NE(m_table.FindRequest(request), nullptr);
    m_table.MakeContext();
    EXPECT_EQ(m_table.FindRequest(request), nullptr);
}

TEST_F(HandleTableTest, AnExchangeUnderWayKeepsItsContext) {
    void* const request = Begin();
    MarkRead(request);
    m_table.FindRequest(request)->state = RequestState::kUnderWay;
    for (std::size_t i = 0; i < 2 * kMostContexts; ++i) m_table.MakeContext();
    EXPECT_NE(m_table.FindRequest(request), nullptr);
}

TEST_F(HandleTableTest, WhereAllAreUnderWayNoneIsBegun) {
    void* last = nullptr;
    for (std::size_t i = 0; i < kMostContexts; ++i) {
        last = Begin();
        m_table.FindRequest(last)->state = RequestState::kUnderWay;
    }
    EXPECT_EQ(m_table.MakeContext(), nullptr);
    m_table.FindRequest(last)->state = RequestState::kOver;
    EXPECT_NE(m_table.MakeContext(), nullptr);
    EXPECT_EQ(m_table.FindRequest(last), nullptr);
}

TEST_F(HandleTableTest, AnAnswerThatCameLateMakesRoomLast) {
    void* const slow = Begin();
    m_table.FindRequest(slow)->state = RequestState::kUnderWay;
    void* const quick = Begin();
    m_table.Finish(quick, 0, std::string(kMostHeldBytes / 4, 'x'));
    m_table.Finish(slow, 0, std::string(kMostHeldBytes / 4, 'x'));
    m_table.Finish(Begin(), 0, std::string(kMostHeldBytes * 3 / 4, 'x'));
    EXPECT_EQ(m_table.FindRequest(quick), nullptr);
    EXPECT_NE(m_table.FindRequest(slow), nullptr);
}

TEST_F(HandleTableTest, OldAnswersMakeRoomForNewOnes) {
    void* const oldest = Begin();
    void* const busy = Begin();
    void* const newer = Begin();
    m_table.FindRequest(oldest)->answer.assign(kMostHeldBytes / 4, 'x');
    m_table.FindRequest(busy)->body.assign(kMostHeldBytes / 4, 'x');
    m_table.FindRequest(busy)->state = RequestState::kUnderWay;
    m_table.FindRequest(newer)->answer.assign(kMostHeldBytes / 4, 'x');
    m_table.MakeRoom(kMostHeldBytes / 4, newer);
    EXPECT_NE(m_table.FindRequest(oldest), nullptr);
    m_table.MakeRoom(kMostHeldBytes / 4 + 1, newer);
    EXPECT_EQ(m_table.FindRequest(oldest), nullptr);
    m_table.MakeRoom(kMostHeldBytes, newer);
    EXPECT_NE(m_table.FindRequest(busy), nullptr);
    EXPECT_NE(m_table.FindRequest(newer), nullptr);
}

}  // namespace
