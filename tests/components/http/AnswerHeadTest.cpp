#include "components/http/AnswerHead.h"

#include <gtest/gtest.h>

namespace {

CAnswerHead HeadOf(std::initializer_list<const char*> lines) {
    CAnswerHead head;
    for (const char* const line : lines) EXPECT_TRUE(head.Take(line)) << line;
    return head;
}

TEST(AnswerHeadTest, StatusAndTypeAreRead) {
    const CAnswerHead head =
        HeadOf({"HTTP/1.1 200 OK\r\n", "CONTENT-type: Text/XML ; charset=utf-8\r\n", "\r\n"});
    EXPECT_EQ(head.Status(), 200);
    EXPECT_EQ(head.Type(), "text/xml");
    EXPECT_FALSE(head.IsEncoded());
    EXPECT_FALSE(head.IsNew());
}

TEST(AnswerHeadTest, AStatusLineWithoutAReasonIsRead) {
    EXPECT_EQ(HeadOf({"HTTP/2 404\r\n"}).Status(), 404);
    EXPECT_EQ(HeadOf({"HTTP/1.1 503 \r\n"}).Status(), 503);
}

TEST(AnswerHeadTest, WhatIsNoStatusIsNone) {
    for (const char* const line :
         {"HTTP/1.1\r\n", "HTTP/1.1 \r\n", "HTTP/1.1 20\r\n", "HTTP/1.1 2000 x\r\n",
          "HTTP/1.1 -20 x\r\n", "HTTP/1.1 20x y\r\n", "HTTP/1.1 000 x\r\n"}) {
        EXPECT_EQ(HeadOf({line}).Status(), 0) << line;
    }
}

TEST(AnswerHeadTest, TheHeadOfOneMoreAnswerReplacesTheOneBefore) {
    const CAnswerHead head = HeadOf({"HTTP/1.1 401 Unauthorized\r\n", "Content-Type: text/html\r\n",
                                     "Content-Encoding: gzip\r\n", "HTTP/1.1 200 OK\r\n"});
    EXPECT_EQ(head.Status(), 200);
    EXPECT_EQ(head.Type(), "");
    EXPECT_FALSE(head.IsEncoded());
    EXPECT_TRUE(head.IsNew());
}

TEST(AnswerHeadTest, OnlyARealEncodingCounts) {
    EXPECT_TRUE(HeadOf({"content-encoding: GZip\r\n"}).IsEncoded());
    EXPECT_TRUE(HeadOf({"Content-Encoding: br\r\n", "Content-Encoding: identity\r\n"}).IsEncoded());
    EXPECT_FALSE(HeadOf({"Content-Encoding: Identity\r\n"}).IsEncoded());
    EXPECT_FALSE(HeadOf({"Content-Encoding: \r\n", "Transfer-Encoding: chunked"}).IsEncoded());
}

TEST(AnswerHeadTest, AHeadIsWholeWithItsEmptyLine) {
    EXPECT_FALSE(HeadOf({"HTTP/1.1 200 OK\r\n", "Content-Le"}).IsWhole());
    EXPECT_TRUE(HeadOf({"HTTP/1.1 200 OK\r\n", "\r\n", "Trailer: x\r\n"}).IsWhole());
    EXPECT_FALSE(HeadOf({"HTTP/1.1 302 Found\r\n", "\r\n", "HTTP/1.1 200 OK\r\n"}).IsWhole());
}

TEST(AnswerHeadTest, AHeadHasALimit) {
    const std::string line = "X: " + std::string(1021, 'x');
    CAnswerHead head;
    for (std::size_t i = 0; i < kLargestHead / line.size(); ++i) ASSERT_TRUE(head.Take(line));
    EXPECT_FALSE(head.Take("\n"));
}

}  // namespace
