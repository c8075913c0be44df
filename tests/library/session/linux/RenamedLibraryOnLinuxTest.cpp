#include <filesystem>
#include <fstream>

#include "RenamedLibraryTest.h"
#include "support/Environment.h"

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

// The dialog is shown by a program that plays its user.
class RenamedLibraryOnLinux : public RenamedLibraryTest {
protected:
    RenamedLibraryOnLinux() {
        SetVariable("DIALOG_LOG", m_prefix.Below("heard"));
        const auto key = platform::CreateRegistryKey(
            platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
            "software\\Velmora\\platform");
        platform::SetRegistryPath(key, "DialogProgram", SCRIPTED_PROGRAM);
        platform::CloseRegistryKey(key);
    }
    ~RenamedLibraryOnLinux() override {
        ClearVariable("DIALOG_LOG");
        ClearVariable("DIALOG_SCRIPT");
    }
    void SetUp() override {
        const std::string path = m_prefix.Below("libTesmarkOpt.so");
        std::filesystem::copy_file(LIBRARY_FILE, path);
        Load(path);
    }
    static void UserDoes(const std::string& steps) {
        SetVariable("DIALOG_SCRIPT",
                    "hear tesmark-dialog\nsay tesmark-dialog\t1\nhear dialog\n"
                    "say ready\t10\t20\t510\t320\nsay area\t0\t0\t1024\t728\nsay built\n"
                    "hear show\nsay shown\n" +
                        steps + "rest");
    }
    std::vector<std::string> Heard() const {
        std::vector<std::string> lines;
        std::ifstream file(m_prefix.Below("heard"), std::ios::binary);
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        return lines;
    }
};

TEST_F(RenamedLibraryOnLinux, TheUserPicksAmongTheServicesSealsByName) {
    UserDoes("say row\t1002\t2\nsay button\t1\n");
    EXPECT_EQ(QueryCopy(), 0);
    EXPECT_THAT(Heard(), Contains("dialog\t102"));
    EXPECT_THAT(Heard(), Contains(Utf8(u8"row\t1002\t合同专用章")));
    EXPECT_THAT(Sent(), ElementsAre(ListRequest(), SealRequest("7002")));
    EXPECT_EQ(FetchFromCopy(), "picture");
}

TEST_F(RenamedLibraryOnLinux, ACancelIsMinus20AndEndsTheSelection) {
    UserDoes("say row\t1002\t1\nsay button\t2\n");
    EXPECT_EQ(QueryCopy(), TESMARK_ONLINE_CANCELLED);
    EXPECT_THAT(Sent(), ElementsAre(ListRequest()));
    EXPECT_FALSE(CopyHasSelection());
}

TEST_F(RenamedLibraryOnLinux, TheOnlySealNeedsNoDialogThere) {
    m_listAnswer = SealList(1, SealInfo("7001", "name"));
    EXPECT_EQ(QueryCopy(), 0);
    EXPECT_TRUE(Heard().empty());
    EXPECT_EQ(Sent().back(), SealRequest("7001"));
}

}  // namespace
