#include "foundation/HeapBuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

TEST(HeapBufferTest, IsNothingToBeginWith) {
    const CBuffer buffer;
    EXPECT_FALSE(buffer);
    EXPECT_EQ(buffer.Data(), nullptr);
    EXPECT_EQ(buffer.Length(), 0);
}

TEST(HeapBufferTest, AllBytesAreZeroAndNoneCountsYet) {
    const CBuffer buffer(5);
    ASSERT_TRUE(buffer);
    EXPECT_EQ(std::memcmp(buffer.Data(), "\0\0\0\0\0", 5), 0);
    EXPECT_EQ(buffer.View(), "");
}

TEST(HeapBufferTest, TheCalleeReportsTheLength) {
    CBuffer buffer(5);
    std::memcpy(buffer.Data(), "ab", 2);
    *buffer.LengthPointer() = 2;
    EXPECT_EQ(buffer.View(), "ab");
    EXPECT_STREQ(buffer.Text(), "ab");
}

TEST(HeapBufferTest, AMoveTakesMemoryAndLengthAlong) {
    CBuffer from(5);
    *from.LengthPointer() = 3;
    const unsigned char* memory = from.Data();
    CBuffer to(std::move(from));
    EXPECT_EQ(to.Data(), memory);
    EXPECT_EQ(to.Length(), 3);
    CBuffer assigned(2);
    assigned = std::move(to);
    EXPECT_EQ(assigned.Data(), memory);
    EXPECT_EQ(assigned.Length(), 3);
}

TEST(HeapBufferTest, ReleasedMemoryIsFreedByTheTaker) {
    CBuffer buffer(5);
    *buffer.LengthPointer() = 3;
    unsigned char* memory = buffer.Release();
    ASSERT_NE(memory, nullptr);
    EXPECT_FALSE(buffer);
    EXPECT_EQ(buffer.Length(), 0);
    std::free(memory);
}

}  // namespace
