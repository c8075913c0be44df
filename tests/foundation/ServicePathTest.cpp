#include "foundation/ServicePath.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Module.h"
#include "support/TemporaryPrefix.h"

namespace {

using namespace std::string_literals;

class ServicePathTest : public testing::Test {
protected:
    void TearDown() override { platform::FreeModule(m_module); }

    std::string Path(const std::string& name) const { return m_prefix.Below(name); }
    void Touch(const std::string& name) const { std::ofstream(Path(name)) << "x"; }
    void LoadAs(const std::string& name) {
        std::filesystem::copy_file(MODULE_STAND_IN, Path(name));
        m_module = platform::LoadModule(Path(name).c_str());
        ASSERT_NE(m_module, nullptr);
    }

    TemporaryPrefix m_prefix;
    platform::ModuleHandle m_module = nullptr;
};

TEST_F(ServicePathTest, WithoutAnEntryThePathIsTheBareName) {
    EXPECT_EQ(get_kvl_path(), platform::ModuleFileName("KVLAppCOM"));
}

TEST_F(ServicePathTest, TheRegisteredFileIsUsedAsItIs) {
    m_prefix.RegisterInstallation("/opt/velmora");
    m_prefix.RegisterCertService("/opt/my \"service\"/any.name");
    EXPECT_EQ(get_kvl_path(), "/opt/my \"service\"/any.name");
}

TEST_F(ServicePathTest, TheInstallationFolderIsAskedWhenNoFileIsRegistered) {
    m_prefix.RegisterInstallation("/opt/velmora");
    EXPECT_EQ(get_kvl_path(), "/opt/velmora" + platform::ModuleBelowInstallFolder("KVLAppCOM"));
}

TEST_F(ServicePathTest, TrailingZeroBytesAreDropped) {
    m_prefix.SetBytes(platform::RegistryRoot::CurrentUser, "Software\\Velmora\\InstallPath",
                      "InstallPath", "/a\0\0\0"s);
    EXPECT_EQ(get_kvl_path(), "/a" + platform::ModuleBelowInstallFolder("KVLAppCOM"));
}

TEST_F(ServicePathTest, ThereIsNoLimitToARegisteredPath) {
    m_prefix.RegisterCertService("/" + std::string(3000, 'a'));
    EXPECT_EQ(get_kvl_path(), "/" + std::string(3000, 'a'));
}

TEST_F(ServicePathTest, WithoutTheModuleTheResultStays) {
    std::string path = "before";
    GetKvlPathBesideModule(path);
    EXPECT_EQ(path, "before");
}

TEST_F(ServicePathTest, ThePathBesideTheModuleTakesThePlaceOfTheResult) {
    LoadAs(platform::ModuleFileName("TesmarkOpt"));
    std::string path = "before";
    GetKvlPathBesideModule(path);
    EXPECT_EQ(path, Path(platform::ModuleFileName("KVLAppCOM")));
}

TEST_F(ServicePathTest, AModuleWithTheSuffixIsNotFound) {
    LoadAs(platform::ModuleFileName("TesmarkOpt_x64"));
    std::string path = "before";
    GetKvlPathBesideModule(path);
    EXPECT_EQ(path, "before");
}

TEST_F(ServicePathTest, TheFirstPlaceOfTheModulesNameCounts) {
    const std::string name = platform::ModuleFileName("TesmarkOpt");
    std::filesystem::create_directory(Path(name + ".d"));
    LoadAs(name + ".d/" + name);
    std::string path = "before";
    GetKvlPathBesideModule(path);
    EXPECT_EQ(path, Path(platform::ModuleFileName("KVLAppCOM")));
}

TEST_F(ServicePathTest, TheRegisteredFileIsTakenIfItExists) {
    Touch("service");
    m_prefix.RegisterCertService(Path("service"));
    std::string first;
    EXPECT_EQ(LocateCertService(&first), Path("service"));
    EXPECT_EQ(first, Path("service"));
}

TEST_F(ServicePathTest, TheFileBesideTheModuleIsTakenIfTheFirstDoesNotExist) {
    m_prefix.RegisterCertService(Path("none"));
    LoadAs(platform::ModuleFileName("TesmarkOpt"));
    Touch(platform::ModuleFileName("KVLAppCOM"));
    std::string first;
    EXPECT_EQ(LocateCertService(&first), Path(platform::ModuleFileName("KVLAppCOM")));
    EXPECT_EQ(first, Path("none"));
}

TEST_F(ServicePathTest, NeitherFileThereGivesNothing) {
    m_prefix.RegisterCertService(Path("none"));
    EXPECT_EQ(LocateCertService(), "");
    LoadAs(platform::ModuleFileName("TesmarkOpt"));
    EXPECT_EQ(LocateCertService(), "");
}

}  // namespace
