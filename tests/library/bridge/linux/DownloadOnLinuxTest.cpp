#include "fakes/LibraryTest.h"
#include "include/Util/httpUntil.h"
#include "support/LoopbackServer.h"

namespace {

using DownloadOnLinux = LibraryTest;

TEST_F(DownloadOnLinux, NothingIsWrittenToTheHostsStandardError) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", "a list"); });
    testing::internal::CaptureStderr();
    EXPECT_EQ(CHttpUntil().DownloadFile(server.Url("/ca1.crl"), m_prefix.Below("target")), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
