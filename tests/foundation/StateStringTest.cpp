#include "foundation/StateString.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/StringFailure.h"

namespace {

using namespace std::string_literals;

std::string Copied(StateString& text, int length) {
    std::string out(static_cast<std::size_t>(length), '#');
    text.CopyTo(reinterpret_cast<unsigned char*>(out.data()), length);
    return out;
}

std::uint32_t FailureOf(void (*action)()) {
    try {
        action();
    } catch (const StringFailure& failure) {
        return failure.Value();
    }
    return 0;
}

TEST(StateStringTest, StartsEmpty) {
    const StateString text;
    EXPECT_TRUE(text.Empty());
    EXPECT_EQ(text.Length(), 0);
    EXPECT_EQ(text.View(), "");
    EXPECT_EQ(text.Text(), "");
}

TEST(StateStringTest, HoldsZeroBytes) {
    StateString text;
    text.Assign("ab\0cd"s);
    EXPECT_EQ(text.Length(), 5);
    EXPECT_EQ(text.View(), "ab\0cd"s);
    EXPECT_EQ(text.Text(), "ab");
}

TEST(StateStringTest, CuttingKeepsTheContentsForTheHost) {
    StateString text;
    text.Assign("ab\0cd"s);
    text.CutAtZeroByte();
    EXPECT_EQ(text.Length(), 2);
    EXPECT_EQ(text.View(), "ab");
    EXPECT_EQ(Copied(text, 5), "ab\0cd"s);
    EXPECT_EQ(text.Length(), 2);
}

TEST(StateStringTest, ATextThatBeginsWithAZeroByteIsEmptyOnceCut) {
    StateString text;
    text.Assign("\0ab"s);
    EXPECT_FALSE(text.Empty());
    text.CutAtZeroByte();
    EXPECT_TRUE(text.Empty());
}

TEST(StateStringTest, BytesNeverStoredReadAsZero) {
    StateString text;
    text.Assign("ab");
    EXPECT_EQ(Copied(text, 4), "ab\0\0"s);
    EXPECT_EQ(text.Length(), 2);
    text.CutAtZeroByte();
    EXPECT_EQ(text.Length(), 2);
}

TEST(StateStringTest, LessThanTheLengthCanBeCopied) {
    StateString text;
    text.Assign("abc");
    EXPECT_EQ(Copied(text, 1), "a");
    EXPECT_EQ(Copied(text, 0), "");
}

TEST(StateStringTest, AnAssignmentReplacesWhatWasBehindTheCut) {
    StateString text;
    text.Assign("abcdef");
    text.Assign("x");
    EXPECT_EQ(Copied(text, 3), "x\0\0"s);
    text.Clear();
    EXPECT_TRUE(text.Empty());
    EXPECT_EQ(Copied(text, 1), "\0"s);
}

TEST(StateStringTest, ATextIsAssignedUpToItsTerminatorAndNullIsEmpty) {
    StateString text;
    text.AssignText("ab\0c");
    EXPECT_EQ(text.View(), "ab");
    text.AssignText(nullptr);
    EXPECT_TRUE(text.Empty());
}

TEST(StateStringTest, TheHostsBytesAreTakenWithTheirLength) {
    StateString text;
    text.AssignFromHost("ab\0c", 4);
    EXPECT_EQ(text.View(), "ab\0c"s);
    text.AssignFromHost(nullptr, 0);
    EXPECT_TRUE(text.Empty());
}

TEST(StateStringTest, ANullPointerWithALengthIsAnInvalidArgument) {
    EXPECT_EQ(FailureOf([] { StateString().AssignFromHost(nullptr, 1); }), 0x80070057U);
}

TEST(StateStringTest, ANegativeLengthIsAnInvalidArgument) {
    EXPECT_EQ(FailureOf([] { StateString().AssignFromHost("a", -1); }), 0x80070057U);
    EXPECT_EQ(FailureOf([] {
                  unsigned char out = 0;
                  StateString().CopyTo(&out, -1);
              }),
              0x80070057U);
}

// A length that no string has fails before a byte is read.
TEST(StateStringTest, AnExhaustedStringIsOutOfMemoryAndStaysAsItWas) {
    EXPECT_EQ(FailureOf([] {
                  StateString().Assign({"ab", std::string().max_size() + 1});
              }),
              0x8007000EU);
    StateString text;
    text.Assign("ab");
    EXPECT_THROW(text.Assign({"cd", std::string().max_size() + 1}), StringFailure);
    EXPECT_EQ(text.View(), "ab");
}

TEST(StateStringTest, AFailureLeavesTheStringAsItWas) {
    StateString text;
    text.Assign("ab");
    EXPECT_THROW(text.AssignFromHost(nullptr, 1), StringFailure);
    EXPECT_EQ(text.View(), "ab");
}

}  // namespace
