#include "bridge/TimeText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <ostream>

#include "foundation/StringFailure.h"
#include "platform/Clock.h"
#include "support/Environment.h"

// For messages of a failed test.
void PrintTo(const TimeParts& parts, std::ostream* out) {
    *out << parts.year << '-' << parts.month << '-' << parts.day << ' ' << parts.hour << ':'
         << parts.minute << ':' << parts.second;
}

namespace {

constexpr TimeParts kMorning{2026, 11, 21, 9, 30, 5};

std::optional<std::uint32_t> FailureOf(const TimeParts& parts) {
    try {
        CalendarTime(parts);
    } catch (const StringFailure& failure) {
        return failure.Value();
    }
    return std::nullopt;
}

TEST(TimeTextTest, EachFormIsRead) {
    EXPECT_EQ(ReadTimeText("D:20261121093005+08'00'"), kMorning);
    EXPECT_EQ(ReadTimeText("2026年11月21日09时30分05秒"), kMorning);
    EXPECT_EQ(ReadTimeText("2026-11-21 09:30:05"), kMorning);
}

TEST(TimeTextTest, PartsOfOneDigitAreReadWhereSomethingEndsThem) {
    EXPECT_EQ(ReadTimeText("2026年11月21日9时30分5秒"), kMorning);
    EXPECT_EQ(ReadTimeText("2026-11-21 9:30:5"), kMorning);
    EXPECT_EQ(ReadTimeText("2026- 11-21   9:30: 5"), kMorning);
}

TEST(TimeTextTest, AFirstDecidesAndThenTheYearSignAnywhere) {
    EXPECT_EQ(ReadTimeText("D2026年11月21日09时30分05秒"), TimeParts{});
    EXPECT_EQ(ReadTimeText("d:20261121093005+08'00'"), TimeParts{});
    EXPECT_EQ(ReadTimeText("2026-11-21 09:30:05 年"), (TimeParts{2026}));
    EXPECT_EQ(ReadTimeText(" D:20261121093005"), TimeParts{});
}

TEST(TimeTextTest, TheOffsetIsNotApplied) {
    EXPECT_EQ(ReadTimeText("D:20261121093005+08'00'"), kMorning);
    EXPECT_EQ(ReadTimeText("D:20261121093005"), kMorning);
    EXPECT_EQ(ReadTimeText("D:20261121093005Z"), kMorning);
    EXPECT_EQ(ReadTimeText("D:20261121093005-05'00'"), kMorning);
}

TEST(TimeTextTest, WhereATextStopsFittingTheRestStaysZero) {
    EXPECT_EQ(ReadTimeText(""), TimeParts{});
    EXPECT_EQ(ReadTimeText("D:"), TimeParts{});
    EXPECT_EQ(ReadTimeText("D:2026"), (TimeParts{2026}));
    EXPECT_EQ(ReadTimeText("2026-11-21"), (TimeParts{2026, 11, 21}));
    EXPECT_EQ(ReadTimeText("2026-11-21T09:30:05"), (TimeParts{2026, 11, 21}));
    EXPECT_EQ(ReadTimeText("2026/11/21 09:30:05"), (TimeParts{2026}));
    EXPECT_EQ(ReadTimeText("2026年11月21号09时30分05秒"), (TimeParts{2026, 11, 21}));
    EXPECT_EQ(ReadTimeText("20261121093005"), (TimeParts{2026}));
}

TEST(TimeTextTest, ACertificatesTimeIsCutByPosition) {
    EXPECT_EQ(CutCertTime("20261121093005"), kMorning);
    EXPECT_EQ(CutCertTime("20261121093005Z and more"), kMorning);
    EXPECT_EQ(CutCertTime("2026112109"), (TimeParts{2026, 11, 21, 9}));
    EXPECT_EQ(CutCertTime("20261"), (TimeParts{2026, 1}));
    EXPECT_EQ(CutCertTime("20x61121093005"), (TimeParts{20, 11, 21, 9, 30, 5}));
    EXPECT_EQ(CutCertTime(""), TimeParts{});
}

TEST(TimeTextTest, ATimeIsThatOfTheSystemsClock) {
    const std::tm local = platform::LocalTime(CalendarTime(kMorning));
    EXPECT_EQ((TimeParts{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                         local.tm_min, local.tm_sec}),
              kMorning);
}

TEST(TimeTextTest, ADayThatTheMonthLacksRunsIntoTheNext) {
    EXPECT_EQ(CalendarTime({2026, 2, 31, 9, 0, 0}), CalendarTime({2026, 3, 3, 9, 0, 0}));
}

TEST(TimeTextTest, TimesFollowOneAnother) {
    EXPECT_EQ(CalendarTime({2026, 11, 21, 9, 30, 6}) - CalendarTime(kMorning), 1);
    EXPECT_EQ(CalendarTime({2026, 6, 1, 0, 0, 0}) - CalendarTime({2026, 5, 31, 23, 59, 59}), 1);
}

TEST(TimeTextTest, PartsOutOfRangeAreTheStringFailure) {
    const TimeParts cases[] = {{},
                               {1899, 12, 31, 23, 59, 59},
                               {-2026, 11, 21, 9, 30, 5},
                               {2026, 0, 21, 9, 30, 5},
                               {2026, 13, 21, 9, 30, 5},
                               {2026, 11, 0, 9, 30, 5},
                               {2026, 11, 32, 9, 30, 5},
                               {2026, 11, 21, -1, 30, 5},
                               {2026, 11, 21, 24, 30, 5},
                               {2026, 11, 21, 9, -1, 5},
                               {2026, 11, 21, 9, 60, 5},
                               {2026, 11, 21, 9, 30, -1},
                               {2026, 11, 21, 9, 30, 60}};
    for (const TimeParts& parts : cases) EXPECT_EQ(FailureOf(parts), StringFailure::kGeneral);
}

TEST(TimeTextTest, PartsAtTheirLimitsAreNone) {
    EXPECT_EQ(FailureOf({1900, 1, 1, 0, 0, 0}), std::nullopt);
    EXPECT_EQ(FailureOf({2999, 12, 31, 23, 59, 59}), std::nullopt);
}

TEST(TimeTextTest, ATimeIsLocal) {
    const SavedVariable zone("TZ");
    SetVariable("TZ", "CST-8");
    tzset();
    EXPECT_EQ(CalendarTime({1970, 1, 2, 8, 0, 0}), 86400);
    EXPECT_EQ(CalendarTime({9999, 12, 31, 23, 59, 59}), 253'402'271'999);
}

}  // namespace
