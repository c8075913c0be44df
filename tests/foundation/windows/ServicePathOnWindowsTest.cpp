#include <gtest/gtest.h>

#include <string>

#include "foundation/ServicePath.h"
#include "platform/Module.h"
#include "platform/windows/Win32.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr char kClassKey[] = "CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}\\InprocServer32";

class ServicePathOnWindows : public testing::Test {
protected:
    ~ServicePathOnWindows() override { platform::FreeModule(m_module); }

    // The default value of the class as a program of that view would register it.
    static void Register(REGSAM view, const std::string& path) {
        HKEY key = nullptr;
        RegCreateKeyExA(HKEY_CLASSES_ROOT, kClassKey, 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr,
                        &key, nullptr);
        RegSetValueExA(key, "", 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()),
                       static_cast<DWORD>(path.size() + 1));
        RegCloseKey(key);
    }
    void LoadAs(const std::string& name) {
        CopyFileA(MODULE_STAND_IN, m_prefix.Below(name).c_str(), TRUE);
        m_module = platform::LoadModule(m_prefix.Below(name).c_str());
        ASSERT_NE(m_module, nullptr);
    }

    TemporaryPrefix m_prefix;
    platform::ModuleHandle m_module = nullptr;
};

TEST_F(ServicePathOnWindows, TheClassIsReadInTheViewOf64Bits) {
    Register(KEY_WOW64_32KEY, "c:\\32\\service.dll");
    EXPECT_EQ(get_kvl_path(), "KVLAppCOM.dll");
    Register(KEY_WOW64_64KEY, "c:\\64\\service.dll");
    EXPECT_EQ(get_kvl_path(), "c:\\64\\service.dll");
    RegDeleteKeyExA(HKEY_CLASSES_ROOT, kClassKey, KEY_WOW64_32KEY, 0);
}

TEST_F(ServicePathOnWindows, AnInstallationFolderThatEndsInABackslashDoublesIt) {
    m_prefix.RegisterInstallation("c:\\Velmora\\");
    EXPECT_EQ(get_kvl_path(), "c:\\Velmora\\\\Program\\KVLAppCOM.dll");
}

TEST_F(ServicePathOnWindows, AFolderWithAChineseNameIsTakenAsItIs) {
    m_prefix.RegisterInstallation("c:\\电子签章");
    EXPECT_EQ(get_kvl_path(), "c:\\电子签章\\Program\\KVLAppCOM.dll");
}

// The system finds the module, and its path has no such text.
TEST_F(ServicePathOnWindows, AModuleInOtherLettersIsFoundAndItsPathLeftOut) {
    LoadAs("TESMARKOPT.DLL");
    std::string path = "before";
    GetKvlPathBesideModule(path);
    EXPECT_EQ(path, "before");
}

}  // namespace
