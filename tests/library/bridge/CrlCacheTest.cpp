// The rule by which revocation lists are kept and renewed.
#include "revocation/CrlCache.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "fakes/LibraryTest.h"
#include "foundation/Registry.h"
#include "platform/RegistryStore.h"
#include "support/LockedStore.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kInfo[] = "URI:http://192.0.2.7/ca1.crl";
constexpr char kUrl[] = "http://192.0.2.7/ca1.crl";

// Writes its content as libcurl would, and keeps the addresses.
class FakeDownloader : public Downloader {
public:
    int DownloadFile(std::string url, std::string path) override {
        urls.push_back(std::move(url));
        std::ofstream file(path, std::ios::binary);
        if (!file) return 0;
        if (result == 0) file << content;
        if (onDownload) onDownload();
        return result;
    }

    std::vector<std::string> urls;
    std::string content = "list";
    int result = 0;
    std::function<void()> onDownload;
};

class FakeClock : public Clock {
public:
    std::time_t Now() override { return m_now; }

    void Set(const std::string& local) {
        std::tm parts{};
        ASSERT_EQ(std::sscanf(local.c_str(), "%d-%d-%d %d:%d:%d", &parts.tm_year, &parts.tm_mon,
                              &parts.tm_mday, &parts.tm_hour, &parts.tm_min, &parts.tm_sec),
                  6);
        parts.tm_year -= 1900;
        parts.tm_mon -= 1;
        parts.tm_isdst = 0;
        m_now = std::mktime(&parts);
    }

private:
    std::time_t m_now = 0;
};

class CrlCacheTest : public LibraryTest {
protected:
    CrlCacheTest() { m_clock.Set("2026-11-14 12:00:00"); }

    int Get(const std::string& info = kInfo) {
        m_crl.clear();
        return m_cache.Get(info, m_crl);
    }
    std::size_t Downloads() const { return m_downloader.urls.size(); }

    std::string Stored(const char* name = "ca1.crl") const {
        CRegistry times(OpenTimes());
        std::string text;
        if (times.key == nullptr || times.GetString(name, text) == 0) return "none";
        return text;
    }
    void Store(const std::string& text) const {
        CRegistry times(platform::RegistryRootKey(platform::RegistryRoot::LocalMachine));
        ASSERT_EQ(times.CreateKey(), 1);
        ASSERT_EQ(times.SetString("ca1.crl", text), 1);
    }
    void WriteList(const std::string& content) const {
        std::filesystem::create_directories(m_prefix.CrlFolder());
        std::ofstream(m_prefix.CrlFolder() + "ca1.crl", std::ios::binary) << content;
    }
    std::string FileContent() const {
        std::ifstream file(m_prefix.CrlFolder() + "ca1.crl", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static platform::RegistryKey OpenTimes() {
        return platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine, kCrlTimesKey,
                                         platform::RegistryAccess::AllAccess);
    }
    // Of a list that is fetched at this time of 2026-11-14.
    void ExpectStaleOneSecondAfterMidnight(const std::string& fetched) {
        m_clock.Set(fetched);
        ASSERT_EQ(Get(), 0);
        m_clock.Set("2026-11-15 00:00:00");
        ASSERT_EQ(Get(), 0);
        EXPECT_EQ(Downloads(), 1u);
        m_clock.Set("2026-11-15 00:00:01");
        ASSERT_EQ(Get(), 0);
        EXPECT_EQ(Downloads(), 2u);
    }

    FakeDownloader m_downloader;
    FakeClock m_clock;
    CrlCache m_cache{m_prefix.CrlFolder(), m_downloader, m_clock};
    std::string m_crl;
};

TEST_F(CrlCacheTest, AnAbsentListIsFetchedKeptAndItsTimeRecorded) {
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(m_crl, "list");
    EXPECT_THAT(m_downloader.urls, ElementsAre(kUrl));
    EXPECT_EQ(FileContent(), "list");
    EXPECT_EQ(Stored(), "2026/11/14 12:00:00");
    EXPECT_THAT(
        Log(),
        ElementsAre("8 [GetCrlDataFromCert]: can not find local crl,download begin",
                    "8 [GetCrlDataFromCert]: download success",
                    "8 [GetCrlDataFromCert]: update regedit",
                    "8 [GetCrlDataFromCert]readFile2Memory: " + m_prefix.CrlFolder() + "ca1.crl"));
}

TEST_F(CrlCacheTest, AFreshListIsReadFromTheFileWithoutADownload) {
    ASSERT_EQ(Get(), 0);
    ForgetLog();
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(m_crl, "list");
    EXPECT_EQ(Downloads(), 1u);
    EXPECT_THAT(
        Log(),
        ElementsAre("8 [GetCrlDataFromCert]: find local crl,get time from regedit",
                    "8 [GetCrlDataFromCert]: open regedit success",
                    "8 [GetCrlDataFromCert]readFile2Memory: " + m_prefix.CrlFolder() + "ca1.crl"));
}

TEST_F(CrlCacheTest, AListFetchedBeforeMidnightIsStaleOneSecondAfterIt) {
    ExpectStaleOneSecondAfterMidnight("2026-11-14 23:59:00");
}

TEST_F(CrlCacheTest, AListFetchedJustAfterMidnightIsFreshUntilTheNextOne) {
    ExpectStaleOneSecondAfterMidnight("2026-11-14 00:01:00");
}

TEST_F(CrlCacheTest, TheStoredTimeOfDayMakesNoDifference) {
    for (const char* stored : {"2026/11/14 23:59:59", "2026/11/14 00:00:00", "2026/11/14"}) {
        WriteList("old list");
        Store(stored);
        m_downloader.urls.clear();
        m_clock.Set("2026-11-15 00:00:00");
        EXPECT_EQ(Get(), 0);
        EXPECT_EQ(Downloads(), 0u) << stored;
        m_clock.Set("2026-11-15 00:00:01");
        EXPECT_EQ(Get(), 0);
        EXPECT_EQ(Downloads(), 1u) << stored;
    }
}

TEST_F(CrlCacheTest, AStaleListIsRenewedAndTheTimeBeforeTheDownloadRecorded) {
    WriteList("old list");
    Store("2026/11/12 08:00:00");
    m_downloader.onDownload = [this] { m_clock.Set("2026-11-14 12:00:30"); };
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(m_crl, "list");
    EXPECT_EQ(Stored(), "2026/11/14 12:00:00");
    EXPECT_THAT(
        Log(),
        ElementsAre("8 [GetCrlDataFromCert]: find local crl,get time from regedit",
                    "8 [GetCrlDataFromCert]: open regedit success",
                    "8 [GetCrlDataFromCert]: regedit time out, download crl begin",
                    "8 [GetCrlDataFromCert]: download crl success, update regedit",
                    "8 [GetCrlDataFromCert]readFile2Memory: " + m_prefix.CrlFolder() + "ca1.crl"));
}

TEST_F(CrlCacheTest, TheFirstDownloadRecordsTheTimeBehindIt) {
    m_downloader.onDownload = [this] { m_clock.Set("2026-11-14 12:00:30"); };
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(Stored(), "2026/11/14 12:00:30");
}

TEST_F(CrlCacheTest, AStoredTextThatIsNoTimeCountsAsStale) {
    for (const char* stored : {"", "never", "2026", "2026-11-14", "0/0/0", "1969/12/30 00:00:00",
                               "-1/-1/-1", "-2147483648/-2147483648/-2147483648"}) {
        WriteList("old list");
        Store(stored);
        m_downloader.urls.clear();
        EXPECT_EQ(Get(), 0);
        EXPECT_EQ(Downloads(), 1u) << stored;
    }
}

TEST_F(CrlCacheTest, AStoredTextThatIsNoTimeStaysStaleFrom2038On) {
    m_clock.Set("2038-01-20 12:00:00");
    WriteList("old list");
    Store("never");
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(m_crl, "list");
}

TEST_F(CrlCacheTest, AStoredTimeInTheFutureIsFresh) {
    WriteList("old list");
    Store("2026/12/24 00:00:00");
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(m_crl, "old list");
}

TEST_F(CrlCacheTest, AFileDeletedByHandIsFetchedAnewAndItsTimeOverwritten) {
    Store("2026/11/14 08:00:00");
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(Downloads(), 1u);
    EXPECT_EQ(Stored(), "2026/11/14 12:00:00");
}

TEST_F(CrlCacheTest, AValueDeletedByHandMeansADownloadInAnyCase) {
    ASSERT_EQ(Get(), 0);
    const CRegistry times(OpenTimes());
    ASSERT_TRUE(platform::DeleteRegistryValue(times.key, "ca1.crl"));
    ForgetLog();
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(Downloads(), 2u);
    EXPECT_EQ(Stored(), "2026/11/14 12:00:00");
    EXPECT_THAT(
        Log(),
        ElementsAre("8 [GetCrlDataFromCert]: find local crl,get time from regedit",
                    "8 [GetCrlDataFromCert]: open regedit success",
                    "8 [GetCrlDataFromCert]readFile2Memory: " + m_prefix.CrlFolder() + "ca1.crl"));
}

TEST_F(CrlCacheTest, AFileWithoutAnyTimesIsRenewedAndTheKeyMade) {
    WriteList("old list");
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(m_crl, "list");
    EXPECT_EQ(Stored(), "2026/11/14 12:00:00");
    EXPECT_THAT(
        Log(),
        ElementsAre("8 [GetCrlDataFromCert]: find local crl,get time from regedit",
                    "8 [GetCrlDataFromCert]: open regedit error",
                    "8 [GetCrlDataFromCert]readFile2Memory: " + m_prefix.CrlFolder() + "ca1.crl"));
}

TEST_F(CrlCacheTest, AFailedFirstDownloadPassesItsCodeAndRecordsNothing) {
    m_downloader.result = 28;
    EXPECT_EQ(Get(), 28);
    EXPECT_EQ(m_crl, "");
    EXPECT_EQ(Stored(), "none");
    EXPECT_EQ(Log().back(), "8 [GetCrlDataFromCert]: download error:28");
}

TEST_F(CrlCacheTest, AFailedRefreshCostsTheOldListAndKeepsItsTime) {
    WriteList("old list");
    Store("2026/11/12 08:00:00");
    m_downloader.result = 28;
    EXPECT_EQ(Get(), TESMARK_FAILED);
    EXPECT_EQ(m_crl, "");
    EXPECT_EQ(FileContent(), "");
    EXPECT_EQ(Stored(), "2026/11/12 08:00:00");
    EXPECT_EQ(Log().back(), std::string("8 [GetCrlDataFromCert]: download error, url is ") + kUrl);
    m_downloader.result = 0;
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(m_crl, "list");
}

TEST_F(CrlCacheTest, AFailureWithoutATimeIsARefreshToo) {
    WriteList("old list");
    m_downloader.result = 28;
    EXPECT_EQ(Get(), TESMARK_FAILED);
    EXPECT_EQ(Stored(), "none");
    Store("2026/11/12 08:00:00");
    const CRegistry times(OpenTimes());
    ASSERT_TRUE(platform::DeleteRegistryValue(times.key, "ca1.crl"));
    EXPECT_EQ(Get(), TESMARK_FAILED);
    EXPECT_EQ(Stored(), "none");
}

TEST_F(CrlCacheTest, AnHttpAddressWinsOverAnHttpsAddressBehindIt) {
    EXPECT_EQ(Get("URI:http://192.0.2.7/a.crl,URI:https://192.0.2.8/b.crl"), 0);
    EXPECT_THAT(m_downloader.urls,
                ElementsAre("http://192.0.2.7/a.crl,URI:https://192.0.2.8/b.crl"));
}

TEST_F(CrlCacheTest, AnHttpAddressBehindAnHttpsAddressIsUsed) {
    EXPECT_EQ(Get("URI:https://192.0.2.8/b.crl,URI:http://192.0.2.7/a.crl"), 0);
    EXPECT_THAT(m_downloader.urls, ElementsAre("http://192.0.2.7/a.crl"));
}

TEST_F(CrlCacheTest, OfSeveralAddressesTheLastIsUsed) {
    EXPECT_EQ(Get("URI:http://192.0.2.7/a.crl,URI:http://192.0.2.8/b.crl"), 0);
    EXPECT_THAT(m_downloader.urls, ElementsAre("http://192.0.2.8/b.crl"));
}

TEST_F(CrlCacheTest, AnHttpsAddressAloneIsUsed) {
    EXPECT_EQ(Get("URI:https://192.0.2.8/b.crl"), 0);
    EXPECT_THAT(m_downloader.urls, ElementsAre("https://192.0.2.8/b.crl"));
}

TEST_F(CrlCacheTest, AnAddressAtTheStartOfTheTextIsRefused) {
    for (const char* info : {"http://192.0.2.7/a.crl", "https://192.0.2.7/a.crl"}) {
        EXPECT_EQ(Get(info), TESMARK_CRL_FAILED);
    }
    EXPECT_THAT(m_downloader.urls, IsEmpty());
    EXPECT_EQ(Log().back(), "8 [GetCrlDataFromCert]: can not find crl url");
}

TEST_F(CrlCacheTest, AnHttpAddressAtTheStartGivesWayToAnHttpsAddress) {
    EXPECT_EQ(Get("http://192.0.2.7/a.crl,URI:https://192.0.2.8/b.crl"), 0);
    EXPECT_THAT(m_downloader.urls, ElementsAre("https://192.0.2.8/b.crl"));
}

TEST_F(CrlCacheTest, AnLdapPointAloneIsRefusedAndLeavesNothingBehind) {
    EXPECT_EQ(Get("URI:ldap://192.0.2.7/cn=ca1"), TESMARK_CRL_FAILED);
    EXPECT_FALSE(std::filesystem::exists(m_prefix.CrlFolder()));
    EXPECT_THAT(Log(), ElementsAre("8 [GetCrlDataFromCert]: can not find crl url"));
}

TEST_F(CrlCacheTest, AnAddressThatEndsInASlashGivesZeroAndNoList) {
    EXPECT_EQ(Get("URI:http://192.0.2.7/lists/"), 0);
    EXPECT_EQ(m_crl, "");
    EXPECT_EQ(Downloads(), 1u);
}

TEST_F(CrlCacheTest, BytesBehindTheAddressStayInItAndInTheFilesName) {
    EXPECT_EQ(Get("URI:http://192.0.2.7/ca1.crl) more"), 0);
    EXPECT_THAT(m_downloader.urls, ElementsAre("http://192.0.2.7/ca1.crl) more"));
    EXPECT_TRUE(std::filesystem::exists(m_prefix.CrlFolder() + "ca1.crl) more"));
    EXPECT_EQ(Stored("ca1.crl) more"), "2026/11/14 12:00:00");
}

TEST_F(CrlCacheTest, ListsOfOneNameFromTwoServersShareOneFile) {
    EXPECT_EQ(Get("URI:http://192.0.2.7/ca1.crl"), 0);
    EXPECT_EQ(Get("URI:http://192.0.2.8/ca1.crl"), 0);
    EXPECT_THAT(m_downloader.urls, ElementsAre(kUrl));
}

TEST_F(CrlCacheTest, NamesThatDifferInCaseShareTheirFileAsTheyShareTheirTime) {
    ASSERT_EQ(Get(), 0);
    m_clock.Set("2026-11-15 12:00:00");
    m_downloader.content = "renewed";
    ASSERT_EQ(Get(), 0);
    EXPECT_EQ(Get("URI:http://192.0.2.8/CA1.crl"), 0);
    EXPECT_EQ(m_crl, "renewed") << "and no list of yesterday under today's time";
    EXPECT_EQ(Downloads(), 2u);
    m_clock.Set("2026-11-16 12:00:00");
    m_downloader.content = "of the other server";
    EXPECT_EQ(Get("URI:http://192.0.2.8/CA1.crl"), 0);
    EXPECT_EQ(FileContent(), "of the other server");
}

TEST_F(CrlCacheTest, NoNameLeadsOutOfTheFolder) {
    std::filesystem::create_directories(m_prefix.CrlFolder());
    for (const char* name : {"..\\planted.bat", "..", "x:stream", "NUL.crl"}) {
        EXPECT_EQ(Get(std::string("URI:http://192.0.2.7/") + name), 0) << name;
    }
    EXPECT_FALSE(std::filesystem::exists(m_prefix.CrlFolder() + "../planted.bat"));
}

TEST_F(CrlCacheTest, AFolderThatCannotBeMadeGivesZeroWithAnEmptyListAndRecordsTheTime) {
    CrlCache cache(m_prefix.Path() + "/no/such/", m_downloader, m_clock);
    EXPECT_EQ(cache.Get(kInfo, m_crl), 0);
    EXPECT_EQ(m_crl, "");
    EXPECT_EQ(Stored(), "2026/11/14 12:00:00");
}

TEST_F(CrlCacheTest, WithoutRightsOnTheStoreEveryCallDownloadsAndNothingIsRecorded) {
    const LockedStore locked(m_prefix);
    for (const std::size_t downloads : {1u, 2u, 3u}) {
        EXPECT_EQ(Get(), 0);
        EXPECT_EQ(m_crl, "list");
        EXPECT_EQ(Downloads(), downloads);
        EXPECT_EQ(Stored(), "none");
    }
}

TEST_F(CrlCacheTest, AnAddressThatEndsInASlashAsksForTheFolderItselfEachTime) {
    for (int i = 0; i < 2; ++i) {
        ForgetLog();
        EXPECT_EQ(Get("URI:http://192.0.2.7/lists/"), 0);
        EXPECT_EQ(Log().front(), "8 [GetCrlDataFromCert]: can not find local crl,download begin");
        EXPECT_EQ(Log().back(), "8 [GetCrlDataFromCert]readFile2Memory: " + m_prefix.CrlFolder());
    }
}

}  // namespace
