// The server's files: their rights, and a log whose disk is full for a while.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "foundation/Text.h"
#include "support/TemporaryFolder.h"
#include "tools/sealserver/AccessLog.h"
#include "tools/sealserver/SealStore.h"

namespace {

using std::filesystem::perms;

constexpr perms kOwnersAlone = perms::owner_read | perms::owner_write;

// All rights for everybody, unless something is said against it.
class FilesOnLinux : public testing::Test {
protected:
    ~FilesOnLinux() override { umask(m_mask); }
    static perms RightsOf(const std::string& path) {
        return std::filesystem::status(path).permissions();
    }

    TemporaryFolder m_folder;
    const mode_t m_mask = umask(0);
};

// No file grows while it stands.
class FullDisk {
public:
    FullDisk() {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_limit);
        rlimit none = m_limit;
        none.rlim_cur = 0;
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_limit{};
    void (*m_handler)(int) = nullptr;
};

TEST_F(FilesOnLinux, TheDatabaseAndTheLogAreTheirOwnersAlone) {
    const std::string database = m_folder.Below("seals.db");
    const std::string log = m_folder.Below("access.log");
    SealStore(database).SetSetting("a", "b");
    AccessLog(log).Write({"a", "GET", "/", 200, 1, ""});
    EXPECT_EQ(RightsOf(database), kOwnersAlone);
    EXPECT_EQ(RightsOf(log), kOwnersAlone);
}

TEST_F(FilesOnLinux, RightsThatWereGivenStay) {
    const std::string log = m_folder.Below("access.log");
    std::ofstream(log, std::ios::binary).flush();
    std::filesystem::permissions(log, kOwnersAlone | perms::group_read);
    AccessLog(log).Write({"a", "GET", "/", 200, 1, ""});
    EXPECT_EQ(RightsOf(log), kOwnersAlone | perms::group_read);
}

TEST_F(FilesOnLinux, NoDatabaseIsMadeWhereALinkLeads) {
    const std::string link = m_folder.Below("seals.db");
    const std::string target = m_folder.Below("target");
    std::filesystem::create_symlink(target, link);
    EXPECT_THROW(SealStore{link}, std::runtime_error);
    EXPECT_FALSE(std::filesystem::exists(target));
    SealStore{target};
    EXPECT_NO_THROW(SealStore{link});
}

TEST_F(FilesOnLinux, ALineThatCannotBeWrittenIsLostAlone) {
    const std::string path = m_folder.Below("access.log");
    AccessLog log(path);
    log.Write({"a", "GET", "/1", 200, 1, ""});
    {
        const FullDisk full;
        log.Write({"a", "GET", "/2", 200, 1, ""});
    }
    log.Write({"a", "GET", "/3", 200, 1, ""});
    const std::string content = ReadFileToString(path);
    EXPECT_NE(content.find("a GET /1 200 1\n"), content.npos);
    EXPECT_EQ(content.find("a GET /2 200 1\n"), content.npos);
    EXPECT_NE(content.find("a GET /3 200 1\n"), content.npos);
}

}  // namespace
