#include "components/automation/windows/Registration.h"

#include <memory>
#include <string>
#include <type_traits>

#include "components/automation/windows/AutomationServer.h"
#include "platform/windows/WideText.h"

namespace {

struct KeyCloser {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using KeyHandle = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

std::wstring ClassKey() {
    return L"Software\\Classes\\CLSID\\" + platform::WideFrom(CP_UTF8, kServedClass.id);
}

std::wstring PathOfThisFile() {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<const wchar_t*>(&RegisterServedClass), &module);
    std::wstring path(32'768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

// The key itself, its default value set to `text`.
LSTATUS MakeKey(HKEY root, const std::wstring& path, const std::wstring& text, KeyHandle& made) {
    HKEY key = nullptr;
    const LSTATUS status = RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                           KEY_SET_VALUE | KEY_WOW64_64KEY, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) return status;
    made.reset(key);
    return RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

LSTATUS RegisterBelow(HKEY root) {
    constexpr wchar_t kModel[] = L"Both";
    KeyHandle key;
    LSTATUS status = MakeKey(root, ClassKey(), kServedClass.description, key);
    if (status != ERROR_SUCCESS) return status;
    status = MakeKey(root, ClassKey() + L"\\InprocServer32", PathOfThisFile(), key);
    if (status != ERROR_SUCCESS) return status;
    return RegSetValueExW(key.get(), L"ThreadingModel", 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(kModel), sizeof kModel);
}

LSTATUS UnregisterBelow(HKEY root) {
    const LSTATUS status = RegDeleteTreeW(root, ClassKey().c_str());
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

}  // namespace

HRESULT RegisterServedClass() {
    LSTATUS status = RegisterBelow(HKEY_LOCAL_MACHINE);
    if (status == ERROR_ACCESS_DENIED) status = RegisterBelow(HKEY_CURRENT_USER);
    return HRESULT_FROM_WIN32(status);
}

HRESULT UnregisterServedClass() {
    const LSTATUS machine = UnregisterBelow(HKEY_LOCAL_MACHINE);
    const LSTATUS user = UnregisterBelow(HKEY_CURRENT_USER);
    return HRESULT_FROM_WIN32(machine != ERROR_SUCCESS ? machine : user);
}
