#include "components/seallibrary/SealTime.h"

#include <gtest/gtest.h>

#include <ctime>

#include "support/Environment.h"
#include "tests/components/seallibrary/TestPki.h"

namespace {

TEST(SealTimeTest, AGeneralizedTimeAndAUtcTimeOfOneMomentAreEqual) {
    EXPECT_EQ(ReadAsn1Time("20260615120000Z"), kTestNow);
    EXPECT_EQ(ReadAsn1Time("260615120000Z"), kTestNow);
}

TEST(SealTimeTest, AnOffsetIsTakenOff) {
    EXPECT_EQ(ReadAsn1Time("20260615200000+0800"), kTestNow);
    EXPECT_EQ(ReadAsn1Time("20260615100000-0200"), kTestNow);
}

TEST(SealTimeTest, SecondsZoneAndFractionMayBeMissingOrPresent) {
    EXPECT_EQ(ReadAsn1Time("2606151200Z"), kTestNow);
    EXPECT_EQ(ReadAsn1Time("20260615120000"), kTestNow);
    EXPECT_EQ(ReadAsn1Time("20260615120000.25Z"), kTestNow);
}

TEST(SealTimeTest, TwoDigitYearsRunFrom1950To2049) {
    EXPECT_EQ(ReadAsn1Time("500101000000Z"), std::time_t{-631152000});
    EXPECT_EQ(ReadAsn1Time("491231235959Z"), std::time_t{2524607999});
}

TEST(SealTimeTest, WhatIsNoMomentOfTheCalendarIsRefused) {
    for (const char* text :
         {"", "2026", "20260015120000Z", "20261315120000Z", "20260230000000Z", "20260615240000Z",
          "20260615126000Z", "20260615120000X", "20260615120000+08", "20260615120000+1500",
          "20260615120000.Z", "202606151200000Z", "2026-06-15"})
        EXPECT_FALSE(ReadAsn1Time(text)) << text;
}

TEST(SealTimeTest, TheLeapDayExistsInLeapYearsOnly) {
    EXPECT_TRUE(ReadAsn1Time("20240229000000Z"));
    EXPECT_FALSE(ReadAsn1Time("20260229000000Z"));
    EXPECT_FALSE(ReadAsn1Time("21000229000000Z"));
    EXPECT_TRUE(ReadAsn1Time("20000229000000Z"));
}

TEST(SealTimeTest, TextsOfATimeAreReadBackAsThatTime) {
    for (const std::time_t time : {kTestNow, std::time_t{0}, std::time_t{951782400}}) {
        EXPECT_EQ(ReadAsn1Time(GeneralizedTimeText(time)), time);
        EXPECT_EQ(ReadAsn1Time(UtcTimeText(time)), time);
    }
    EXPECT_EQ(GeneralizedTimeText(kTestNow), "20260615120000Z");
    EXPECT_EQ(UtcTimeText(kTestNow), "260615120000Z");
    EXPECT_EQ(IsoTimeText(kTestNow), "2026-06-15T12:00:00Z");
}

TEST(SealTimeTest, AUtcTimeEndsWithTheYear2049) {
    EXPECT_EQ(UtcTimeText(2524607999), "491231235959Z");
    EXPECT_EQ(UtcTimeText(2524608000), "");
    EXPECT_EQ(UtcTimeText(-631152001), "");
    EXPECT_EQ(GeneralizedTimeText(2524608000), "20500101000000Z");
}

TEST(SealTimeTest, ATimeWithoutEndAndOneOfOldHaveTheirTexts) {
    EXPECT_EQ(GeneralizedTimeText(253402300799), "99991231235959Z");
    EXPECT_EQ(GeneralizedTimeText(253402300800), "");
    EXPECT_EQ(GeneralizedTimeText(-315619200), "19600101000000Z");
    EXPECT_EQ(GeneralizedTimeText(-62167219200), "00000101000000Z");
    EXPECT_EQ(GeneralizedTimeText(-62167219201), "");
    EXPECT_EQ(UtcTimeText(-315619200), "600101000000Z");
}

class HostTimeTest : public testing::Test {
protected:
    HostTimeTest() {
        SetVariable("TZ", "CST-8");
        tzset();
    }
    ~HostTimeTest() override {
        ClearVariable("TZ");
        tzset();
    }
};

TEST_F(HostTimeTest, TheFormsOfHostsAreLocalTimesOfOneMoment) {
    for (const char* text : {"2026-06-15T20:00:00", "2026-06-15 20:00:00", "2026-6-15 20:0:0",
                             "2026年06月15日20时00分00秒", "D:20260615200000+08'00'"})
        EXPECT_EQ(ReadHostTime(text), kTestNow) << text;
}

TEST_F(HostTimeTest, TheFormsOfAsn1TellTheirZoneOrAreLocal) {
    for (const char* text : {"20260615120000Z", "260615120000Z", "2606151200Z", "20260615120000.5Z",
                             "20260615200000+0800", "20260615100000-0200", "20260615200000",
                             "20260615200000.5", "260615200000", "2606152000"})
        EXPECT_EQ(ReadHostTime(text), kTestNow) << text;
}

TEST_F(HostTimeTest, AZoneAtTheEndOfADateAndTimeCounts) {
    for (const char* text :
         {"2026-06-15T12:00:00Z", "2026-06-15 12:00:00Z", "2026-06-15T13:00:00+01:00",
          "2026-06-15T10:30:00-0130", "2026-06-15T12:00:00.125Z", "2026-06-15 20:00:00.125"})
        EXPECT_EQ(ReadHostTime(text), kTestNow) << text;
}

TEST_F(HostTimeTest, TheOffsetOfADocumentsTimeIsLeftOutOfAccount) {
    EXPECT_EQ(ReadHostTime("D:20260615200000-05'00'"), kTestNow);
    EXPECT_EQ(ReadHostTime("D:20260615200000Z"), kTestNow);
}

TEST_F(HostTimeTest, ATimeWithoutEndAndOneOfOldAreRead) {
    EXPECT_EQ(ReadHostTime("9999-12-31 23:59:59"), std::time_t{253402300799 - 8 * 3600});
    EXPECT_EQ(ReadHostTime("1960-01-01 00:00:00"), std::time_t{-315619200 - 8 * 3600});
}

TEST_F(HostTimeTest, AnythingElseIsRefused) {
    for (const char* text : {"", "2026-06-15", "2026-06-15 25:00:00", "2026-02-30 00:00:00",
                             "D:2026", "20260615200000X", "20260615", "202606152000",
                             "20260615120000+8", "0000-00-00 00:00:00", "20260-06-15 20:00:00"})
        EXPECT_FALSE(ReadHostTime(text)) << text;
}

}  // namespace
