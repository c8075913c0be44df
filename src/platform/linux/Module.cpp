#include "platform/Module.h"

#include <dlfcn.h>
#include <link.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace platform {

namespace {

// What a caller on Windows gets from a buffer of 260 bytes.
constexpr std::size_t kPathLimit = 259;

struct Search {
    std::string fileName;
    std::string path;
};

std::string_view BaseName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

int CompareModule(dl_phdr_info* info, std::size_t, void* data) {
    auto& search = *static_cast<Search*>(data);
    if (info->dlpi_name == nullptr || BaseName(info->dlpi_name) != search.fileName) return 0;
    search.path = info->dlpi_name;
    return 1;
}

// Only the folder is resolved: the file's name is the one under which it was loaded.
std::string Absolute(const std::string& path) {
    if (path.starts_with('/')) return path;
    const std::string folder = "./" + path.substr(0, path.rfind('/') + 1);
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(folder.c_str(), nullptr),
                                                               &std::free);
    if (!resolved) return path;
    return std::string(resolved.get()) + "/" + std::string(BaseName(path));
}

}  // namespace

ModuleHandle LoadModule(const char* path) {
    const std::string name = path;
    if (name.empty()) return nullptr;
    const bool bare = name.find('/') == std::string::npos;
    return dlopen((bare ? "./" + name : name).c_str(), RTLD_NOW | RTLD_LOCAL);
}

void FreeModule(ModuleHandle module) {
    if (module != nullptr) dlclose(module);
}

void* FindSymbol(ModuleHandle module, const char* name) {
    return module != nullptr ? dlsym(module, name) : nullptr;
}

std::string LoadedModulePath(const char* stem) {
    Search search{ModuleFileName(stem), {}};
    dl_iterate_phdr(CompareModule, &search);
    return search.path.empty() ? "" : Absolute(search.path).substr(0, kPathLimit);
}

std::string ModuleFileName(const char* stem) { return std::string("lib") + stem + ".so"; }

std::string ModuleBelowInstallFolder(const char* stem) {
    return "/Program/" + ModuleFileName(stem);
}

void ClearLastError() { errno = 0; }

int LastError() { return errno; }

}  // namespace platform
