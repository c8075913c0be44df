// What a head may ask before it is parsed.

#include "tools/sealserver/RequestHead.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Get(const std::string& target, const std::string& fields = "") {
    return "GET " + target + " HTTP/1.1\r\nHost: localhost\r\n" + fields + "\r\n";
}

std::string Lines(std::size_t count) {
    std::string lines;
    for (std::size_t i = 0; i < count; ++i) lines += "a: b\r\n";
    return lines;
}

TEST(RequestHeadTest, EndsWithAnEmptyLine) {
    EXPECT_EQ(EndOfHead(""), 0u);
    EXPECT_EQ(EndOfHead("GET / HTTP/1.1\r\na: b\r\n\r"), 0u);
    EXPECT_EQ(EndOfHead("GET / HTTP/1.1\r\n\r\nbody"), 18u);
    EXPECT_EQ(EndOfHead("GET / HTTP/1.1\n\r\nbody"), 17u);
    EXPECT_EQ(EndOfHead("GET / HTTP/1.1\r\n\n"), 0u);
}

TEST(RequestHeadTest, ItsEndIsFoundWhereverAPieceEnded) {
    const std::string head = Get("/");
    for (std::size_t known = 0; known < head.size(); ++known) {
        EXPECT_EQ(EndOfHead(head.substr(0, known)), 0u);
        EXPECT_EQ(EndOfHead(head, known), head.size()) << known;
    }
}

TEST(RequestHeadTest, ATargetMayHave1024BytesInALineThatIsNoLonger) {
    EXPECT_EQ(StatusOfRefusedHead(Get("/" + std::string(kLongestTarget - 1, 'a'))), 0);
    EXPECT_EQ(StatusOfRefusedHead(Get("/" + std::string(kLongestTarget, 'a'))), 414);
    EXPECT_EQ(StatusOfRefusedHead(Get("/?" + std::string(kLongestTarget, 'a'))), 414);
    EXPECT_EQ(StatusOfRefusedHead(Get("  /" + std::string(kLongestTarget + 30, 'a'))), 414);
    EXPECT_EQ(StatusOfRefusedHead(Get("/ " + std::string(kLongestTarget + 30, 'a'))), 414);
    EXPECT_EQ(StatusOfRefusedHead("GET /" + std::string(kMaxHeadBytes, 'a')), 414);
}

TEST(RequestHeadTest, ItHasSoManyBytesAndLines) {
    const std::string rest(kMaxHeadBytes - Get("/", "a: \r\n").size(), 'a');
    EXPECT_EQ(StatusOfRefusedHead(Get("/", "a: " + rest + "\r\n")), 0);
    EXPECT_EQ(StatusOfRefusedHead(Get("/", "a: " + rest + "a\r\n")), 431);
    EXPECT_EQ(StatusOfRefusedHead(Get("/", Lines(kMostHeadLines - 3))), 0);
    EXPECT_EQ(StatusOfRefusedHead(Get("/", Lines(kMostHeadLines - 2))), 431);
}

TEST(RequestHeadTest, NobodyAsksForAPart) {
    for (const char* const range :
         {"Range: bytes=0-0\r\n", "rANGE:bytes=0-0\r\n", "Range:\r\n", "Range : bytes=0-0\r\n",
          " Range: bytes=0-0\r\n", "Range: bytes=0-0\n", "a: b\nRange: bytes=0-0\r\n"})
        EXPECT_EQ(StatusOfRefusedHead(Get("/", range)), 416) << range;
    for (const char* const other :
         {"If-Range: x\r\n", "X-Range: x\r\n", "Ranges: x\r\n", "Rang: x\r\n", "a: Range: x\r\n"})
        EXPECT_EQ(StatusOfRefusedHead(Get("/", other)), 0) << other;
}

TEST(RequestHeadTest, TheLogFindsMethodAndTarget) {
    EXPECT_EQ(LineOf(Get("/a?b")).method, "GET");
    EXPECT_EQ(LineOf(Get("/a?b")).target, "/a?b");
    EXPECT_EQ(LineOf("GET /cut").target, "/cut");
    EXPECT_EQ(LineOf("").method, "");
    EXPECT_EQ(LineOf("\r\n\r\nGET /").target, "");
}

}  // namespace
