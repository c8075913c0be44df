#include "components/certservice/FileRights.h"

#include <windows.h>
// After the system's own header.
#include <aclapi.h>

#include <vector>

namespace {

std::vector<BYTE> ThisUser() {
    HANDLE token = nullptr;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<BYTE> user(size);
    const bool told = GetTokenInformation(token, TokenUser, user.data(), size, &size) != 0;
    CloseHandle(token);
    return told ? user : std::vector<BYTE>();
}

bool AllowsOnly(ACL* list, PSID user) {
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (!GetAce(list, i, &entry)) return false;
        auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE) continue;
        const PSID who = &allowed->SidStart;
        if (!EqualSid(who, user) && !IsWellKnownSid(who, WinLocalSystemSid)) return false;
    }
    return true;
}

}  // namespace

bool IsForOwnerAlone(const std::string& path) {
    const std::vector<BYTE> user = ThisUser();
    ACL* list = nullptr;
    PSECURITY_DESCRIPTOR rights = nullptr;
    // A file without a list is everybody's.
    if (user.empty() || GetNamedSecurityInfoA(const_cast<char*>(path.c_str()), SE_FILE_OBJECT,
                                              DACL_SECURITY_INFORMATION, nullptr, nullptr, &list,
                                              nullptr, &rights) != ERROR_SUCCESS) {
        return false;
    }
    const bool alone =
        list && AllowsOnly(list, reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid);
    LocalFree(rights);
    return alone;
}
