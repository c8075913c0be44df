#include "platform/Module.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

class ModuleTest : public testing::Test {
protected:
    ModuleTest() : m_before(std::filesystem::current_path()) {}
    ~ModuleTest() override {
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

TEST_F(ModuleTest, AModuleIsLoadedByItsPathAndItsFunctionsFound) {
    ASSERT_NE(Load(CopyAs("any.name")), nullptr);
    const auto answer = reinterpret_cast<int (*)()>(FindSymbol(m_module, "Answer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ(FindSymbol(m_module, "Question"), nullptr);
}

TEST_F(ModuleTest, WhatIsNoModuleIsNull) {
    std::ofstream(Path("text.so")) << "text";
    EXPECT_EQ(Load(Path("text.so")), nullptr);
    EXPECT_EQ(Load(Path("none.so")), nullptr);
    EXPECT_EQ(Load(""), nullptr);
    EXPECT_EQ(FindSymbol(nullptr, "Answer"), nullptr);
    FreeModule(nullptr);
}

TEST_F(ModuleTest, ALoadedModuleIsFoundByItsFilesName) {
    EXPECT_EQ(LoadedModulePath("TesmarkOpt"), "");
    const std::string path = CopyAs(ModuleFileName("TesmarkOpt"));
    ASSERT_NE(Load(path), nullptr);
    EXPECT_EQ(LoadedModulePath("TesmarkOpt"), path);
    EXPECT_EQ(LoadedModulePath("TesmarkOpt_x64"), "");
    EXPECT_EQ(LoadedModulePath("esmarkOpt"), "");
}

TEST_F(ModuleTest, ALoadedModuleIsNotFoundByItsSoname) {
    ASSERT_NE(Load(CopyAs("renamed.so")), nullptr);
    EXPECT_EQ(LoadedModulePath("TesmarkOpt"), "");
}

TEST_F(ModuleTest, AModuleThatWasFreedIsNotFound) {
    ASSERT_NE(Load(CopyAs(ModuleFileName("TesmarkOpt"))), nullptr);
    FreeModule(m_module);
    m_module = nullptr;
    EXPECT_EQ(LoadedModulePath("TesmarkOpt"), "");
}

TEST_F(ModuleTest, TheFullPathIsToldOfAModuleLoadedByARelativeOne) {
    const std::string path = CopyAs(ModuleFileName("TesmarkOpt"));
    std::filesystem::current_path(m_prefix.Path());
    ASSERT_NE(Load(ModuleFileName("TesmarkOpt")), nullptr);
    EXPECT_EQ(LoadedModulePath("TesmarkOpt"), path);
}

}  // namespace
