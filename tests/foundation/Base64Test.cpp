#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "foundation/Text.h"

namespace {

using namespace std::string_literals;

std::string Bytes(std::size_t length) {
    std::string bytes;
    unsigned int state = 7;
    for (std::size_t i = 0; i < length; ++i) {
        state = state * 1664525 + 1013904223;
        bytes += static_cast<char>(state >> 24);
    }
    return bytes;
}

std::string BrokenInto(std::size_t length, std::string_view text, std::string_view lineBreak) {
    std::string lines;
    for (; !text.empty(); text.remove_prefix(std::min(length, text.size()))) {
        lines.append(text.substr(0, length)).append(lineBreak);
    }
    return lines;
}

TEST(Base64Test, TheVectorsOfTheStandardHold) {
    const std::pair<const char*, const char*> vectors[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
    };
    for (const auto& [data, text] : vectors) {
        EXPECT_EQ(Base64Encode(data), text);
        EXPECT_EQ(Base64Decode(text), data);
    }
}

TEST(Base64Test, EveryLengthComesBack) {
    for (std::size_t length = 0; length < 100; ++length) {
        const std::string bytes = Bytes(length);
        EXPECT_EQ(Base64Encode(bytes).size(), (length + 2) / 3 * 4);
        EXPECT_EQ(Base64Decode(Base64Encode(bytes)), bytes);
    }
    for (const std::size_t length : {3071, 3072, 3073, 3074, 3075, 6144, 100000}) {
        EXPECT_EQ(Base64Decode(Base64Encode(Bytes(length))), Bytes(length));
    }
}

TEST(Base64Test, ANullPointerEncodesToNothing) { EXPECT_EQ(Base64EncodeBytes(nullptr, 5), ""); }

TEST(Base64Test, APointerAndLengthEncodeLikeAString) {
    const std::string bytes = Bytes(50);
    EXPECT_EQ(Base64EncodeBytes(reinterpret_cast<const unsigned char*>(bytes.data()), 50),
              Base64Encode(bytes));
}

TEST(Base64Test, BytesBeyondAsciiAndZeroBytesEncode) {
    EXPECT_EQ(Base64Encode("\0\xFF\xFE\0"s), "AP/+AA==");
}

TEST(Base64Test, PaddingTellsTheLastGroupsLength) {
    EXPECT_EQ(Base64Decode("QQ=="), "A");
    EXPECT_EQ(Base64Decode("QUI="), "AB");
    EXPECT_EQ(Base64Decode("QUJD"), "ABC");
}

TEST(Base64Test, TextsJoinedEndToEndComeOutJoined) {
    EXPECT_EQ(Base64Decode("QQ==QQ=="), "AA");
    EXPECT_EQ(Base64Decode("QUI=QUJD"), "ABABC");
}

TEST(Base64Test, ACharacterBehindASinglePaddingGivesItsByte) {
    EXPECT_EQ(Base64Decode("QQ=A"), "A\0"s);
    EXPECT_EQ(Base64Decode("QQ=B"), "A\x01"s);
}

TEST(Base64Test, LineBreaksAfterWholeGroupsAreSkipped) {
    const std::string bytes = Bytes(5000);
    for (const std::size_t width : {4, 64, 76}) {
        EXPECT_EQ(Base64Decode(BrokenInto(width, Base64Encode(bytes), "\n")), bytes);
        EXPECT_EQ(Base64Decode(BrokenInto(width, Base64Encode(bytes), "\r\n")), bytes);
    }
}

TEST(Base64Test, LineBreaksAloneDecodeToNothing) { EXPECT_EQ(Base64Decode("\r\n\n"), ""); }

TEST(Base64Test, LineBreaksAtTheStartAreSkipped) { EXPECT_EQ(Base64Decode("\nQUJD"), "ABC"); }

TEST(Base64Test, ALineBreakInsideAGroupIsReadAsDataOfValueZero) {
    EXPECT_EQ(Base64Decode("QU\nD"), Base64Decode("QUAD"));
    const std::string bytes = Bytes(60);
    EXPECT_NE(Base64Decode(BrokenInto(10, Base64Encode(bytes), "\n")), bytes);
}

TEST(Base64Test, AForeignCharacterOfSevenBitsCountsAsZero) {
    EXPECT_EQ(Base64Decode("Q-*D"), Base64Decode("QAAD"));
    EXPECT_EQ(Base64Decode("=UJD"), Base64Decode("AUJD"));
    EXPECT_EQ(Base64Decode("Q=JD"), Base64Decode("QAJD"));
    EXPECT_EQ(Base64Decode("QU\0D"s), Base64Decode("QUAD"));
}

TEST(Base64Test, ThreeCharactersGoTheStrictWayToTwoBytes) {
    EXPECT_EQ(Base64Decode("QUJ"), "AB");
    EXPECT_EQ(Base64Decode("QU"), "A");
    EXPECT_EQ(Base64Decode("Q"), "");
}

TEST(Base64Test, TheStrictWayStopsAtALineFeedAndLosesTheRest) {
    EXPECT_EQ(Base64Decode("QUJD\nQU"), "ABC");
}

TEST(Base64Test, TheStrictWayStopsAtTheFirstPadding) { EXPECT_EQ(Base64Decode("QQ==QUI"), "A"); }

TEST(Base64Test, TheStrictWayStopsAtTheFirstForeignCharacter) {
    EXPECT_EQ(Base64Decode("QUJDQU*DQUJDQ"), "ABCA");
    EXPECT_EQ(Base64Decode("QUJD\0QUJDQ"s), "ABC");
}

TEST(Base64Test, AByteAboveSevenBitsSendsTheWholeInputTheStrictWay) {
    EXPECT_EQ(Base64Decode("QUJDQU\x80"
                           "DQUJD"),
              "ABCA");
    EXPECT_EQ(Base64Decode("Q*JDQU\x80"
                           "D"),
              "");
    EXPECT_EQ(Base64Decode("\xFFUJD"), "");
}

}  // namespace
