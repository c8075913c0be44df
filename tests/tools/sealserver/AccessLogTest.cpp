// A line of the log is one request, whatever was sent.

#include "tools/sealserver/AccessLog.h"

#include <gtest/gtest.h>

#include "foundation/Text.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr std::time_t kMoment = 1'795'305'600;  // 2026-11-22

TEST(AccessLogTest, ALineTellsWhoAskedWhatAndWhatCameOfIt) {
    EXPECT_EQ(
        AccessLine({"127.0.0.1", "POST", "/QelmServlet", 200, 231, "GetSealList 200 2"}, kMoment),
        "2026-11-22T00:00:00Z 127.0.0.1 POST /QelmServlet 200 231 GetSealList 200 2");
    EXPECT_EQ(AccessLine({"::1", "GET", "/", 303, 0, ""}, kMoment),
              "2026-11-22T00:00:00Z ::1 GET / 303 0");
}

TEST(AccessLogTest, WhatIsNotPrintableIsCoded) {
    EXPECT_EQ(AccessLine({"", "GET", "/a b\r\n\xE5\x8D\xB0\x1B[2J", 404, 1, ""}, kMoment),
              "2026-11-22T00:00:00Z - GET /a%20b%0D%0A%E5%8D%B0%1B[2J 404 1");
}

TEST(AccessLogTest, LongTargetsAreCut) {
    const std::string line =
        AccessLine({"a", "GET", std::string(100'000, 'x'), 404, 1, ""}, kMoment);
    EXPECT_LT(line.size(), 600u);
}

TEST(AccessLogTest, LinesAreAppendedAndThereAtOnce) {
    const TemporaryFolder folder;
    const std::string path = folder.Below("log");
    AccessLog(path).Write({"a", "GET", "/1", 200, 1, ""});
    AccessLog log(path);
    log.Write({"a", "GET", "/2", 200, 1, ""});
    const std::string content = ReadFileToString(path);
    EXPECT_NE(content.find("a GET /1 200 1\n"), content.npos);
    EXPECT_NE(content.find("a GET /2 200 1\n"), content.npos);
}

TEST(AccessLogTest, ALogThatCannotBeWrittenIsTold) {
    const TemporaryFolder folder;
    EXPECT_THROW(AccessLog(folder.Below("no/folder")), std::runtime_error);
    EXPECT_NO_THROW(AccessLog("").Write({}));
}

}  // namespace
