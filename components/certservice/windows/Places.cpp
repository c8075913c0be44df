#include "components/certservice/Places.h"

#include "components/certservice/ServiceStore.h"
#include "components/certservice/windows/PathBytes.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <shlobj.h>

namespace {

// Asked of the system, not of the environment, which any program may have set for this one.
std::string SystemFolder(int kind) {
    char folder[MAX_PATH] = {};
    if (SHGetFolderPathA(nullptr, kind | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, folder) !=
        S_OK) {
        return {};
    }
    return WithoutEndSeparators(folder) + "\\Velmora\\";
}

std::string FolderOf(const char* setting, const char* name, int standard) {
    const std::string path = WithoutEndSeparators(ReadStorePath(setting));
    if (!path.empty()) return path;
    const std::string base = SystemFolder(standard);
    return base.empty() ? std::string() : base + name;
}

}  // namespace

// Not in the folder for this machine's data that the log has: programs of low integrity, which are
// trusted with nothing, may write there.
std::string KeyFolderPath() { return FolderOf("KeyFolder", "keys", CSIDL_LOCAL_APPDATA); }

std::string TrustFolderPath() { return FolderOf("TrustFolder", "trust", CSIDL_COMMON_APPDATA); }

std::string CaFolderPath() { return FolderOf("CaFolder", "ca", CSIDL_LOCAL_APPDATA); }
