#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "platform/Module.h"
#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

class ModuleOnLinux : public testing::Test {
protected:
    ModuleOnLinux() : m_before(std::filesystem::current_path()) {}
    ~ModuleOnLinux() override {
        FreeModule(m_module);
        std::filesystem::current_path(m_before);
    }
    std::string Path(const std::string& name) const { return m_prefix.Below(name); }
    std::string CopyAs(const std::string& name) const {
        std::filesystem::copy_file(MODULE_STAND_IN, Path(name));
        return Path(name);
    }
    ModuleHandle Load(const std::string& path) { return m_module = LoadModule(path.c_str()); }

    TemporaryPrefix m_prefix;
    std::filesystem::path m_before;
    ModuleHandle m_module = nullptr;
};

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
