#include <gtest/gtest.h>

#include <string>

#include "platform/RegistryStore.h"
#include "platform/windows/Win32.h"
#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

using namespace std::string_literals;

constexpr char kClassKey[] = "CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}";
constexpr char kView32[] =
    "Software\\Classes\\Wow6432Node\\CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}";

class RegistryStoreOnWindows : public testing::Test {
protected:
    ~RegistryStoreOnWindows() override {
        CloseRegistryKey(m_key);
        RegDeleteKeyA(HKEY_LOCAL_MACHINE, kView32);
    }
    std::string Default(RegistryAccess access) {
        CloseRegistryKey(m_key);
        m_key = OpenRegistryKey(RegistryRoot::ClassesRoot, kClassKey, access);
        if (m_key == nullptr) return "no key";
        char data[64] = {};
        std::size_t size = sizeof data;
        return QueryRegistryValue(m_key, "", data, &size) ? std::string(data, size) : "no value";
    }
    static DWORD TypeOf(RegistryKey key, const char* name) {
        DWORD type = REG_NONE;
        RegQueryValueExA(reinterpret_cast<HKEY>(key), name, nullptr, &type, nullptr, nullptr);
        return type;
    }

    TemporaryPrefix m_prefix;
    RegistryKey m_key = nullptr;
};

TEST_F(RegistryStoreOnWindows, EachViewShowsItsOwnClasses) {
    HKEY key = nullptr;
    for (const REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
        ASSERT_EQ(RegCreateKeyExA(HKEY_CLASSES_ROOT, kClassKey, 0, nullptr, 0,
                                  KEY_ALL_ACCESS | view, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        const std::string text = view == KEY_WOW64_64KEY ? "64" : "32";
        RegSetValueExA(key, "", 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), 3);
        RegCloseKey(key);
    }
    EXPECT_EQ(Default(RegistryAccess::Read64), "64\0"s);
    EXPECT_EQ(Default(RegistryAccess::Read32), "32\0"s);
}

TEST_F(RegistryStoreOnWindows, ValuesHaveTheTypesOfTheirKind) {
    m_key =
        CreateRegistryKey(RegistryRootKey(RegistryRoot::LocalMachine), "software\\Velmora\\test");
    ASSERT_NE(m_key, nullptr);
    ASSERT_TRUE(SetRegistryString(m_key, "s", "x"));
    ASSERT_TRUE(SetRegistryNumber(m_key, "n", 1));
    EXPECT_EQ(TypeOf(m_key, "s"), static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(TypeOf(m_key, "n"), static_cast<DWORD>(REG_DWORD));
}

TEST_F(RegistryStoreOnWindows, AKeyIsThereAfterItsHandleIsClosed) {
    CloseRegistryKey(
        CreateRegistryKey(RegistryRootKey(RegistryRoot::LocalMachine), "software\\Velmora\\test"));
    m_key = OpenRegistryKey(RegistryRoot::LocalMachine, "software\\Velmora\\test",
                            RegistryAccess::AllAccess);
    EXPECT_NE(m_key, nullptr);
}

}  // namespace
