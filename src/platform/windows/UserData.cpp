#include "platform/windows/UserData.h"

#include "platform/windows/Win32.h"

namespace platform {

std::optional<unsigned long> SystemMajorVersion() {
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (GetVersionExA(&version) == 0) return std::nullopt;
    return version.dwMajorVersion;
}

std::string LowFolder(std::string folder, std::optional<unsigned long> majorVersion) {
    if (!majorVersion || *majorVersion == 6) folder += "Low";
    return folder;
}

}  // namespace platform
