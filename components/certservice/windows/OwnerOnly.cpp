#include "components/certservice/windows/OwnerOnly.h"

#include <sddl.h>

#include <string>
#include <vector>

namespace {

std::vector<BYTE> TokenUserOf(HANDLE token) {
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<BYTE> user(size);
    if (size == 0 || !GetTokenInformation(token, TokenUser, user.data(), size, &size)) return {};
    return user;
}

// The user as the rights' own language names him; empty if the system doesn't tell. Not "the
// owner": what an administrator makes belongs to all of them.
std::string UserName() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return {};
    const std::vector<BYTE> user = TokenUserOf(token);
    CloseHandle(token);
    char* text = nullptr;
    if (user.empty() || !ConvertSidToStringSidA(
                            reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid, &text)) {
        return {};
    }
    const std::string name = text;
    LocalFree(text);
    return name;
}

}  // namespace

OwnerOnly::OwnerOnly(bool everybody) {
    const std::string user = UserName();
    if (user.empty()) return;
    std::string rights = "D:P(A;OICI;FA;;;" + user + ")";
    if (everybody) rights += "(A;OICI;FR;;;WD)";
    ConvertStringSecurityDescriptorToSecurityDescriptorA(
        rights.c_str(), SDDL_REVISION_1, &m_attributes.lpSecurityDescriptor, nullptr);
}

OwnerOnly::~OwnerOnly() { LocalFree(m_attributes.lpSecurityDescriptor); }
