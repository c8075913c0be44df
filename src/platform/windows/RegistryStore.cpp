#include "platform/RegistryStore.h"

#include "platform/windows/Win32.h"

namespace platform {

namespace {

// Handles of ours are the system's own.
HKEY Native(RegistryKey key) { return reinterpret_cast<HKEY>(key); }

HKEY Native(RegistryRoot root) { return Native(RegistryRootKey(root)); }

REGSAM Rights(RegistryAccess access) {
    switch (access) {
        case RegistryAccess::Read64: return KEY_READ | KEY_WOW64_64KEY;
        case RegistryAccess::Read32: return KEY_READ | KEY_WOW64_32KEY;
        case RegistryAccess::AllAccess: break;
    }
    return KEY_ALL_ACCESS;
}

bool Store(RegistryKey key, const char* name, DWORD type, const void* data, std::size_t size) {
    return key != nullptr &&
           RegSetValueExA(Native(key), name, 0, type, static_cast<const BYTE*>(data),
                          static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

}  // namespace

RegistryKey RegistryRootKey(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::CurrentUser: return reinterpret_cast<RegistryKey>(HKEY_CURRENT_USER);
        case RegistryRoot::ClassesRoot: return reinterpret_cast<RegistryKey>(HKEY_CLASSES_ROOT);
        case RegistryRoot::LocalMachine: break;
    }
    return reinterpret_cast<RegistryKey>(HKEY_LOCAL_MACHINE);
}

RegistryKey OpenRegistryKey(RegistryRoot root, const char* path, RegistryAccess access) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(Native(root), path, 0, Rights(access), &key) != ERROR_SUCCESS) return nullptr;
    return reinterpret_cast<RegistryKey>(key);
}

RegistryKey CreateRegistryKey(RegistryKey parent, const char* path) {
    HKEY key = nullptr;
    if (parent == nullptr ||
        RegCreateKeyExA(Native(parent), path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, &key, nullptr) != ERROR_SUCCESS) {
        return nullptr;
    }
    return reinterpret_cast<RegistryKey>(key);
}

// The system takes the close of a root, and of nothing, without harm.
void CloseRegistryKey(RegistryKey key) { RegCloseKey(Native(key)); }

bool QueryRegistryValue(RegistryKey key, const char* name, void* data, std::size_t* size) {
    DWORD length = static_cast<DWORD>(*size);
    const LSTATUS status = key != nullptr ? RegQueryValueExA(Native(key), name, nullptr, nullptr,
                                                             static_cast<BYTE*>(data), &length)
                                          : ERROR_INVALID_HANDLE;
    const bool told = status == ERROR_SUCCESS || status == ERROR_MORE_DATA;
    *size = told ? length : 0;
    return status == ERROR_SUCCESS;
}

// Paths are narrow text like any other here.
bool QueryRegistryPath(RegistryKey key, const char* name, void* data, std::size_t* size) {
    return QueryRegistryValue(key, name, data, size);
}

bool SetRegistryString(RegistryKey key, const char* name, const std::string& text) {
    return Store(key, name, REG_SZ, text.c_str(), text.size() + 1);
}

bool SetRegistryNumber(RegistryKey key, const char* name, unsigned int number) {
    const DWORD value = number;
    return Store(key, name, REG_DWORD, &value, sizeof value);
}

bool SetRegistryPath(RegistryKey key, const char* name, const std::string& path) {
    return SetRegistryString(key, name, path);
}

bool DeleteRegistryValue(RegistryKey key, const char* name) {
    return key != nullptr && RegDeleteValueA(Native(key), name) == ERROR_SUCCESS;
}

}  // namespace platform
