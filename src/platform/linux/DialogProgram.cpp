#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <memory>
#include <optional>

#include "platform/RegistryStore.h"
#include "platform/linux/DialogProcess.h"

namespace platform {

namespace {

// A path in the store is at most as long as one of the file system's.
constexpr std::size_t kLongestPath = 4096;

std::optional<std::string> ConfiguredProgram() {
    const RegistryKey key = OpenRegistryKey(RegistryRoot::LocalMachine,
                                            "software\\Velmora\\platform", RegistryAccess::Read64);
    if (!key) return {};
    std::string path(kLongestPath, '\0');
    std::size_t size = path.size() - 1;
    const bool found = QueryRegistryPath(key, "DialogProgram", path.data(), &size);
    CloseRegistryKey(key);
    if (!found) return {};
    return path.c_str();
}

bool HasDisplay() {
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        const char* const value = secure_getenv(variable);
        if (value && *value) return true;
    }
    return false;
}

// The host's own, and the host in its foreground: one in the background would be stopped, with all
// that runs beside it, when a program takes the terminal.
bool HasTerminal() {
    return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1 &&
           tcgetpgrp(STDIN_FILENO) == getpgrp();
}

bool CanBeStarted(const std::string& program) {
    struct stat file {};
    return stat(program.c_str(), &file) == 0 && S_ISREG(file.st_mode) &&
           access(program.c_str(), X_OK) == 0;
}

bool IsAbsolute(const std::string& path) { return path.starts_with('/'); }

// As the loader names it: relative, where the host named it so.
std::string OwnFile() {
    static const char kInside = 0;
    Dl_info object{};
    void* entry = nullptr;
    if (dladdr1(&kInside, &object, &entry, RTLD_DL_LINKMAP) == 0 || !entry) return {};
    const std::string name = static_cast<const link_map*>(entry)->l_name;
    return name.empty() ? "/proc/self/exe" : name;
}

std::string Resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                               &std::free);
    return resolved ? resolved.get() : "";
}

std::string FolderOf(const std::string& file) { return file.substr(0, file.rfind('/') + 1); }

std::string OwnFolder() {
    const std::string file = OwnFile();
    if (file == "/proc/self/exe") return FolderOf(Resolved(file));
    if (file.empty() || IsAbsolute(file)) return FolderOf(file);
    const std::string folder = Resolved("./" + FolderOf(file));
    return folder.empty() ? "" : folder + "/";
}

// Found while this is being loaded: a relative name means another place once the host has changed
// its working folder. Of no type that leaves something to do at the process's end.
const std::array<char, PATH_MAX> g_folder = [] {
    std::array<char, PATH_MAX> kept{};
    const std::string folder = OwnFolder();
    if (folder.size() < kept.size()) folder.copy(kept.data(), folder.size());
    return kept;
}();

}  // namespace

std::string LibraryFolder() { return g_folder.data(); }

std::string FindDialogProgram(const std::string& folder) {
    if (const auto configured = ConfiguredProgram()) {
        return IsAbsolute(*configured) ? *configured : std::string();
    }
    if (!IsAbsolute(folder)) return {};
    const std::string windows = folder + "tesmark-dialog";
    if (HasDisplay() && CanBeStarted(windows)) return windows;
    const std::string terminal = folder + "tesmark-dialog-tty";
    if (HasTerminal() && CanBeStarted(terminal)) return terminal;
    return {};
}

}  // namespace platform
