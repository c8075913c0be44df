#include "platform/Module.h"

#include "platform/windows/Win32.h"

namespace platform {

namespace {

HMODULE Native(ModuleHandle module) { return static_cast<HMODULE>(module); }

}  // namespace

ModuleHandle LoadModule(const char* path) {
    // An empty name is the program itself for the system.
    return *path != '\0' ? LoadLibraryA(path) : nullptr;
}

void FreeModule(ModuleHandle module) {
    if (module != nullptr) FreeLibrary(Native(module));
}

void* FindSymbol(ModuleHandle module, const char* name) {
    if (module == nullptr) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(Native(module), name));
}

std::string LoadedModulePath(const char* stem) {
    const HMODULE module = GetModuleHandleA(ModuleFileName(stem).c_str());
    if (module == nullptr) return {};
    char path[MAX_PATH] = {};
    GetModuleFileNameA(module, path, sizeof path);
    return path;
}

std::string ModuleFileName(const char* stem) { return std::string(stem) + ".dll"; }

std::string ModuleBelowInstallFolder(const char* stem) {
    return "\\Program\\" + ModuleFileName(stem);
}

void ClearLastError() { SetLastError(0); }

int LastError() { return static_cast<int>(GetLastError()); }

}  // namespace platform
