#include "LoadedObject.h"

#include <vector>

#include "platform/Files.h"
#include "platform/Module.h"
#include "platform/windows/Win32.h"

namespace {

std::string VersionText(const VS_FIXEDFILEINFO& info) {
    return "version " + std::to_string(HIWORD(info.dwFileVersionMS)) + "." +
           std::to_string(LOWORD(info.dwFileVersionMS)) + "." +
           std::to_string(HIWORD(info.dwFileVersionLS)) + "." +
           std::to_string(LOWORD(info.dwFileVersionLS));
}

std::string BuildOf(const char* path) {
    constexpr char kNone[] = "no version";
    const DWORD size = GetFileVersionInfoSizeA(path, nullptr);
    if (size == 0) return kNone;
    std::vector<char> resource(size);
    void* info = nullptr;
    UINT length = 0;
    if (!GetFileVersionInfoA(path, 0, size, resource.data()) ||
        !VerQueryValueA(resource.data(), "\\", &info, &length) ||
        length < sizeof(VS_FIXEDFILEINFO)) {
        return kNone;
    }
    return VersionText(*static_cast<const VS_FIXEDFILEINFO*>(info));
}

}  // namespace

std::optional<LoadedObject> FindLoaded(const std::string& fileName) {
    const HMODULE module = GetModuleHandleA(platform::PathFromUtf8(fileName).c_str());
    if (module == nullptr) return {};
    char path[MAX_PATH] = {};
    GetModuleFileNameA(module, path, sizeof path - 1);
    return LoadedObject{platform::Utf8FromPath(path), BuildOf(path)};
}

std::string BesideLibrary(const std::string& fileName) {
    const auto library = FindLoaded(platform::ModuleFileName("TesmarkOpt_x64"));
    if (!library) return {};
    const std::string path = library->path.substr(0, library->path.rfind('\\') + 1) + fileName;
    return platform::PathExists(platform::PathFromUtf8(path).c_str()) ? path : "";
}

std::string FindProgram(const std::string& name) {
    char path[MAX_PATH] = {};
    const DWORD length = SearchPathA(nullptr, platform::PathFromUtf8(name).c_str(), ".exe",
                                     sizeof path, path, nullptr);
    return length > 0 && length < sizeof path ? platform::Utf8FromPath(path) : "";
}
