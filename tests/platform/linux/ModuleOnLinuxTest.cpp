#include <unistd.h>

#include <filesystem>
#include <string>

#include "ModuleTest.h"

using namespace platform;

namespace {

using ModuleOnLinux = ModuleTest;

TEST_F(ModuleOnLinux, ABareNameIsAFileOfTheWorkingDirectory) {
    CopyAs("libbare.so");
    EXPECT_EQ(Load("libbare.so"), nullptr);
    std::filesystem::current_path(m_prefix.Path());
    EXPECT_NE(Load("libbare.so"), nullptr);
}

TEST_F(ModuleOnLinux, ABareNameIsNeverSearchedFor) { EXPECT_EQ(Load("libc.so.6"), nullptr); }

TEST_F(ModuleOnLinux, APathIsCutAt259Bytes) {
    const std::string folder = std::string(200, 'd');
    std::filesystem::create_directories(Path(folder + "/" + folder));
    const std::string path = CopyAs(folder + "/" + folder + "/libTesmarkOpt.so");
    ASSERT_NE(Load(path), nullptr);
    EXPECT_EQ(LoadedModulePath("TesmarkOpt"), path.substr(0, 259));
}

TEST_F(ModuleOnLinux, NamesAreThePlatforms) {
    EXPECT_EQ(ModuleFileName("KVLAppCOM"), "libKVLAppCOM.so");
    EXPECT_EQ(ModuleBelowInstallFolder("KVLAppCOM"), "/Program/libKVLAppCOM.so");
}

TEST_F(ModuleOnLinux, TheLastErrorIsTheThreads) {
    ClearLastError();
    EXPECT_EQ(LastError(), 0);
    EXPECT_NE(access("/none", F_OK), 0);
    EXPECT_EQ(LastError(), ENOENT);
}

}  // namespace
