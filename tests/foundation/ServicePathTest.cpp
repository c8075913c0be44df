#include "foundation/ServicePath.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Module.h"
#include "support/TemporaryPrefix.h"

namespace {

class ServicePathTest : public testing::Test {
protected:
    void TearDown() override { platform::FreeModule(m_module); }

    std::string Path(const std::string& name) const { return m_prefix.Path() + "/" + name; }
    void Touch(const std::string& name) const { std::ofstream(Path(name)) << "x"; }
    void LoadAs(const std::string& name) {
        std::filesystem::copy_file(MODULE_STAND_IN, Path(name));
        m_module = platform::LoadModule(Path(name).c_str());
        ASSERT_NE(m_module, nullptr);
    }
    void Install(const std::string& value) const {
        std::ofstream(Path("user.reg"))
            << "[HKEY_CURRENT_USER\\Software\\Velmora\\InstallPath]\n\"InstallPath\"=" << value
            << "\n";
    }

    TemporaryPrefix m_prefix;
    platform::ModuleHandle m_module = nullptr;
};

TEST_F(ServicePathTest, WithoutAnEntryThePathIsTheBareName) {
    EXPECT_EQ(get_kvl_path(), "libKVLAppCOM.so");
}

TEST_F(ServicePathTest, TheRegisteredFileIsUsedAsItIs) {
    Install("\"/opt/velmora\"");
    m_prefix.RegisterCertService("/opt/my \"service\"/any.name");
    EXPECT_EQ(get_kvl_path(), "/opt/my \"service\"/any.name");
}

TEST_F(ServicePathTest, TheInstallationFolderIsAskedWhenNoFileIsRegistered) {
    Install("\"/opt/velmora\"");
    EXPECT_EQ(get_kvl_path(), "/opt/velmora/Program/libKVLAppCOM.so");
}

TEST_F(ServicePathTest, TrailingZeroBytesAreDropped) {
    Install("hex:2f,61,00,00,00");
    EXPECT_EQ(get_kvl_path(), "/a/Program/libKVLAppCOM.so");
}

TEST_F(ServicePathTest, ThePathsBytesAreNotConverted) {
    Install("\"/\xE5\x8D\xB0\xFF\"");
    EXPECT_EQ(get_kvl_path(), "/\xE5\x8D\xB0\xFF/Program/libKVLAppCOM.so");
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
    LoadAs("libTesmarkOpt.so");
    std::string path = "before";
    GetKvlPathBesideModule(path);
    EXPECT_EQ(path, Path("libKVLAppCOM.so"));
}

TEST_F(ServicePathTest, AModuleWithTheSuffixIsNotFound) {
    LoadAs("libTesmarkOpt_x64.so");
    std::string path = "before";
    GetKvlPathBesideModule(path);
    EXPECT_EQ(path, "before");
}

TEST_F(ServicePathTest, TheFirstPlaceOfTheModulesNameCounts) {
    std::filesystem::create_directory(Path("libTesmarkOpt.so.d"));
    LoadAs("libTesmarkOpt.so.d/libTesmarkOpt.so");
    std::string path = "before";
    GetKvlPathBesideModule(path);
    EXPECT_EQ(path, Path("libKVLAppCOM.so"));
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
    LoadAs("libTesmarkOpt.so");
    Touch("libKVLAppCOM.so");
    std::string first;
    EXPECT_EQ(LocateCertService(&first), Path("libKVLAppCOM.so"));
    EXPECT_EQ(first, Path("none"));
}

TEST_F(ServicePathTest, NeitherFileThereGivesNothing) {
    m_prefix.RegisterCertService(Path("none"));
    EXPECT_EQ(LocateCertService(), "");
    LoadAs("libTesmarkOpt.so");
    EXPECT_EQ(LocateCertService(), "");
}

}  // namespace
