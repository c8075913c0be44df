// For whom the control's class is registered.

#include <gtest/gtest.h>

#include <string>

#include "components/automation/RegisteredClass.h"
#include "platform/closed/PersonalSealControl.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <sddl.h>

namespace {

constexpr char kStandIn[] = "Software\\VelmoraRegistrationTest";
constexpr char kEveryRight[] = "D:(A;;KA;;;WD)";
// Of another's key: it may be read, and given back its rights.
constexpr char kReadAlone[] = "D:(A;;KRWD;;;WD)";

std::string ClassKey() {
    return std::string("Software\\Classes\\CLSID\\") + kPersonalSealControlClass;
}

PSECURITY_DESCRIPTOR Rights(const char* text) {
    PSECURITY_DESCRIPTOR rights = nullptr;
    EXPECT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(text, SDDL_REVISION_1, &rights,
                                                                     nullptr));
    return rights;
}

// A key of this user's stands in for that of the machine.
class RegistrationOnWindows : public testing::Test {
protected:
    RegistrationOnWindows() {
        RemoveAll();
        EXPECT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, kStandIn, &m_machine), ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_machine), ERROR_SUCCESS);
    }
    ~RegistrationOnWindows() override {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        SetMachineRights(kEveryRight);
        RegCloseKey(m_machine);
        RemoveAll();
    }

    // From here on the machine's class is there, and not for this user to change.
    void DenyTheMachine() {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyA(m_machine, ClassKey().c_str(), &key), ERROR_SUCCESS);
        RegCloseKey(key);
        SetMachineRights(kReadAlone);
    }
    // The server's path, empty without one.
    static std::string ServerBelow(HKEY root) {
        char path[MAX_PATH] = {};
        DWORD size = sizeof path - 1;
        RegGetValueA(root, (ClassKey() + "\\InprocServer32").c_str(), nullptr, RRF_RT_REG_SZ,
                     nullptr, path, &size);
        return path;
    }
    static bool IsServer(const std::string& path) {
        return lstrcmpiA(path.substr(path.find_last_of('\\') + 1).c_str(),
                         "VelmoraPersonalSeal.dll") == 0;
    }

    HKEY m_machine = nullptr;

private:
    void SetMachineRights(const char* text) const {
        HKEY key = nullptr;
        if (RegOpenKeyExA(m_machine, ClassKey().c_str(), 0, WRITE_DAC, &key)) return;
        const PSECURITY_DESCRIPTOR rights = Rights(text);
        EXPECT_EQ(RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, rights), ERROR_SUCCESS);
        LocalFree(rights);
        RegCloseKey(key);
    }
    static void RemoveAll() {
        RegDeleteTreeA(HKEY_CURRENT_USER, kStandIn);
        RegDeleteTreeA(HKEY_CURRENT_USER, ClassKey().c_str());
    }
};

TEST_F(RegistrationOnWindows, WhoMayChangeTheMachineRegistersForAllUsers) {
    ASSERT_TRUE(RegisterClassFile(CONTROL_FILE, kPersonalSealControlClass));
    EXPECT_TRUE(IsServer(ServerBelow(m_machine))) << ServerBelow(m_machine);
    EXPECT_EQ(ServerBelow(HKEY_CURRENT_USER), "");
    ASSERT_TRUE(UnregisterClassFile(CONTROL_FILE, kPersonalSealControlClass));
    EXPECT_EQ(ServerBelow(m_machine), "");
}

TEST_F(RegistrationOnWindows, WhoMayNotRegistersForThisUserAlone) {
    DenyTheMachine();
    ASSERT_TRUE(RegisterClassFile(CONTROL_FILE, kPersonalSealControlClass));
    EXPECT_EQ(ServerBelow(m_machine), "");
    EXPECT_TRUE(IsServer(ServerBelow(HKEY_CURRENT_USER))) << ServerBelow(HKEY_CURRENT_USER);
}

TEST_F(RegistrationOnWindows, ThisUsersClassIsTakenAwayWhateverTheMachineAllows) {
    DenyTheMachine();
    ASSERT_TRUE(RegisterClassFile(CONTROL_FILE, kPersonalSealControlClass));
    // Its result is the system's: Wine lets keys be deleted that may only be read.
    UnregisterClassFile(CONTROL_FILE, kPersonalSealControlClass);
    EXPECT_EQ(ServerBelow(HKEY_CURRENT_USER), "");
}

}  // namespace
