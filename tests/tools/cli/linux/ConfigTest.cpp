// The store's files.

#include <filesystem>

#include "tools/cli/CliFixture.h"

namespace {

class ConfigOnLinux : public CliTest {};

// The library ignores a failed write; a person must not.
TEST_F(ConfigOnLinux, AStoreThatCannotBeWrittenIsAnError) {
    std::filesystem::remove(InPrefix("machine.reg"));
    std::filesystem::create_directory(InPrefix("machine.reg"));
    const auto outcome = Tesmark({"config", "set", "bVerifyCRL", "1"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.error.find("machine.reg"), std::string::npos) << outcome.error;
}

TEST_F(ConfigOnLinux, TheMachinesAndTheUsersSettingsAreTwoFilesToRead) {
    ASSERT_EQ(Tesmark({"config", "set", "bVerifyCRL", "1"}).exitCode, 0);
    ASSERT_EQ(Tesmark({"config", "set", "InstallPath", "/opt/velmora"}).exitCode, 0);
    const std::string store = FileContent(InPrefix("machine.reg"));
    EXPECT_NE(store.find("\"bVerifyCRL\"=dword:00000001"), std::string::npos) << store;
    EXPECT_TRUE(std::filesystem::exists(InPrefix("user.reg")));
}

}  // namespace
