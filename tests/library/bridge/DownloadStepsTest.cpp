// What a download asks of libcurl, step by step, and what a step that fails leaves behind.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "fakes/Curl.h"
#include "fakes/LibraryTest.h"
#include "include/Util/httpUntil.h"
#include "platform/StandardError.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr int kBadArgument = 43;
constexpr int kOutOfMemory = 27;
const bool kTraces = platform::TracesToStandardError();
constexpr char kUrl[] = "http://192.0.2.7/ca1.crl";

class DownloadStepsTest : public LibraryTest {
protected:
    DownloadStepsTest() {
        fakes::Curl() = {};
        std::ofstream(m_path) << "the old list";
    }

    int Download() { return CHttpUntil().DownloadFile(kUrl, m_path); }
    std::string Content() const {
        std::ifstream file(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string m_path = m_prefix.Path() + "/target";
};

TEST_F(DownloadStepsTest, TheOptionsAreSetInTheirOrderAndNoOthers) {
    std::vector<std::string> expected = {
        "curl_global_init 3", "curl_easy_init",   "URL http://192.0.2.7/ca1.crl",
        "NOPROGRESS 1",       "FOLLOWLOCATION 1", "SSL_VERIFYPEER 0",
        "SSL_VERIFYHOST 0",   "WRITEFUNCTION",    "WRITEDATA",
        "curl_easy_perform",  "curl_easy_cleanup"};
    if (kTraces) expected.insert(expected.begin() + 3, "VERBOSE 1");
    EXPECT_EQ(Download(), 0);
    EXPECT_EQ(fakes::Curl().calls, expected);
    EXPECT_EQ(Content(), "");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(DownloadStepsTest, LibcurlIsStartedOnEveryCallAndNeverEnded) {
    EXPECT_EQ(Download(), 0);
    fakes::Curl().calls.clear();
    EXPECT_EQ(Download(), 0);
    EXPECT_EQ(fakes::Curl().calls.front(), "curl_global_init 3");
    EXPECT_EQ(fakes::Curl().calls.back(), "curl_easy_cleanup");
}

TEST_F(DownloadStepsTest, AFailedStartIsLoggedAndReturnedWithTheTargetAsItWas) {
    fakes::Curl().results["curl_global_init"] = kOutOfMemory;
    EXPECT_EQ(Download(), kOutOfMemory);
    EXPECT_THAT(fakes::Curl().calls, ElementsAre("curl_global_init 3"));
    EXPECT_THAT(Log(), ElementsAre("3 curl_global_init failed, 27"));
    EXPECT_EQ(Content(), "the old list");
}

TEST_F(DownloadStepsTest, AnOptionThatFailsIsLoggedAndReturnedBeforeTheTargetIsOpened) {
    std::vector<std::string> options = {
        "URL", "NOPROGRESS", "FOLLOWLOCATION", "SSL_VERIFYPEER", "SSL_VERIFYHOST", "WRITEFUNCTION"};
    if (kTraces) options.push_back("VERBOSE");
    for (const std::string& option : options) {
        ForgetLog();
        fakes::Curl() = {};
        fakes::Curl().results[option] = kOutOfMemory;
        EXPECT_EQ(Download(), kOutOfMemory) << option;
        EXPECT_THAT(Log(), ElementsAre("3 curl_easy_setopt failed, 27")) << option;
        EXPECT_THAT(fakes::Curl().calls, Not(Contains("WRITEDATA"))) << option;
        EXPECT_EQ(Content(), "the old list") << option;
    }
}

TEST_F(DownloadStepsTest, AMissingHandleShowsUpAsAnOptionThatFails) {
    fakes::Curl().givesNoHandle = true;
    EXPECT_EQ(Download(), kBadArgument);
    EXPECT_THAT(fakes::Curl().calls, ElementsAre("curl_global_init 3", "curl_easy_init",
                                                 "URL http://192.0.2.7/ca1.crl"));
    EXPECT_THAT(Log(), ElementsAre("3 curl_easy_setopt failed, 43"));
    EXPECT_EQ(Content(), "the old list");
}

TEST_F(DownloadStepsTest, ATargetThatLibcurlRefusesIsLoggedAndReturnedAndIsEmpty) {
    fakes::Curl().results["WRITEDATA"] = kOutOfMemory;
    EXPECT_EQ(Download(), kOutOfMemory);
    EXPECT_THAT(Log(), ElementsAre("3 curl_easy_setopt failed, 27"));
    EXPECT_THAT(fakes::Curl().calls, Not(Contains("curl_easy_perform")));
    EXPECT_EQ(Content(), "");
}

TEST_F(DownloadStepsTest, ATargetThatCannotBeOpenedEndsInZeroWithoutATransferOrARecord) {
    m_path = m_prefix.Path() + "/nowhere/target";
    EXPECT_EQ(Download(), 0);
    EXPECT_THAT(fakes::Curl().calls, Not(Contains("WRITEDATA")));
    EXPECT_THAT(fakes::Curl().calls, Not(Contains("curl_easy_perform")));
    EXPECT_EQ(fakes::Curl().calls.back(), "curl_easy_cleanup");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(DownloadStepsTest, AFailedTransferIsLoggedAndReturned) {
    fakes::Curl().results["curl_easy_perform"] = 28;
    EXPECT_EQ(Download(), 28);
    EXPECT_THAT(Log(), ElementsAre("3 curl_easy_perform failed, 28"));
    EXPECT_EQ(Content(), "");
}

}  // namespace
