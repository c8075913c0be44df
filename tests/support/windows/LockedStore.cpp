#include "support/LockedStore.h"

#include <windows.h>
// After the system's own header.
#include <sddl.h>

#include <stdexcept>

namespace {

constexpr const char* kKeys[] = {"software\\Velmora\\fenmoor",
                                 "software\\Velmora\\CrlLastUpdateTime"};
// Everybody may read, and may give himself more again.
constexpr char kReadOnly[] = "D:P(A;;KRWDSD;;;WD)";
constexpr char kFree[] = "D:P(A;;KA;;;WD)";

void SetRights(const char* path, const char* rights, REGSAM access) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    HKEY key = nullptr;
    const bool done =
        ConvertStringSecurityDescriptorToSecurityDescriptorA(rights, SDDL_REVISION_1, &descriptor,
                                                             nullptr) != 0 &&
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, access, nullptr, &key, nullptr) ==
            ERROR_SUCCESS &&
        RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor) == ERROR_SUCCESS;
    RegCloseKey(key);
    LocalFree(descriptor);
    if (!done) throw std::runtime_error("the store's rights can't be set");
}

}  // namespace

LockedStore::LockedStore(const TemporaryPrefix&) {
    for (const char* key : kKeys) SetRights(key, kReadOnly, KEY_ALL_ACCESS);
}

LockedStore::~LockedStore() {
    for (const char* key : kKeys) SetRights(key, kFree, KEY_READ | WRITE_DAC);
}
