#include "ModuleTest.h"

#include <fstream>

using namespace platform;

namespace {

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
