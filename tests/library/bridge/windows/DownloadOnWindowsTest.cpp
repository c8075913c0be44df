#include <gmock/gmock.h>

#include "fakes/LibraryTest.h"
#include "foundation/Text.h"
#include "include/Util/httpUntil.h"
#include "support/LoopbackServer.h"

namespace {

using testing::HasSubstr;

class DownloadOnWindows : public LibraryTest {
protected:
    int Download(const std::string& path) {
        return CHttpUntil().DownloadFile(m_server.Url("/ca1.crl"), path);
    }

    const LoopbackServer m_server{
        [](const std::string&) { return LoopbackServer::Page("200 OK", "a list"); }};
};

TEST_F(DownloadOnWindows, TheTraceGoesToTheProcesssStandardError) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(Download(m_prefix.Below("target")), 0);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("> GET /ca1.crl HTTP/1.1"));
}

TEST_F(DownloadOnWindows, ATargetWithAChineseNameIsWritten) {
    EXPECT_EQ(Download(m_prefix.Below("吊销列表.crl")), 0);
    EXPECT_EQ(ReadFileToString(m_prefix.Below("吊销列表.crl")), "a list");
}

}  // namespace
