#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/Module.h"
#include "platform/windows/Win32.h"
#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

class ModuleOnWindows : public testing::Test {
protected:
    ~ModuleOnWindows() override { FreeModule(m_module); }
    std::string CopyAs(const std::string& name) const {
        CopyFileA(MODULE_STAND_IN, m_prefix.Below(name).c_str(), TRUE);
        return m_prefix.Below(name);
    }

    TemporaryPrefix m_prefix;
    ModuleHandle m_module = nullptr;
};

TEST_F(ModuleOnWindows, ABareNameIsLookedForAsTheSystemDoes) {
    m_module = LoadModule("version.dll");
    EXPECT_NE(m_module, nullptr);
}

TEST_F(ModuleOnWindows, AModuleInAFolderWithAChineseNameIsLoaded) {
    CreateDirectoryA(m_prefix.Below("印章").c_str(), nullptr);
    m_module = LoadModule(CopyAs("印章/服务.dll").c_str());
    ASSERT_NE(m_module, nullptr);
    EXPECT_NE(FindSymbol(m_module, "Answer"), nullptr);
}

TEST_F(ModuleOnWindows, ALoadedModuleIsFoundWhateverTheCaseOfItsLetters) {
    const std::string path = CopyAs("TESMARKOPT.DLL");
    m_module = LoadModule(path.c_str());
    ASSERT_NE(m_module, nullptr);
    EXPECT_EQ(LoadedModulePath("TesmarkOpt"), path);
}

TEST_F(ModuleOnWindows, NamesAreThePlatforms) {
    EXPECT_EQ(ModuleFileName("KVLAppCOM"), "KVLAppCOM.dll");
    EXPECT_EQ(ModuleBelowInstallFolder("KVLAppCOM"), "\\Program\\KVLAppCOM.dll");
}

TEST_F(ModuleOnWindows, TheLastErrorIsTheThreads) {
    ClearLastError();
    EXPECT_EQ(LastError(), 0);
    EXPECT_EQ(LoadModule(m_prefix.Below("none.dll").c_str()), nullptr);
    EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
}

}  // namespace
