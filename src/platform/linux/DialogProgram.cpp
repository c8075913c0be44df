#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
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

bool HasTerminal() { return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1; }

bool CanBeStarted(const std::string& program) { return access(program.c_str(), X_OK) == 0; }

}  // namespace

std::string LibraryFolder() {
    static const char kInside = 0;
    Dl_info object{};
    if (dladdr(&kInside, &object) == 0 || !object.dli_fname) return {};
    const std::string path = object.dli_fname;
    return path.substr(0, path.rfind('/') + 1);
}

std::string FindDialogProgram(const std::string& folder) {
    if (const auto configured = ConfiguredProgram()) return *configured;
    const std::string windows = folder + "tesmark-dialog";
    if (HasDisplay() && CanBeStarted(windows)) return windows;
    const std::string terminal = folder + "tesmark-dialog-tty";
    if (HasTerminal() && CanBeStarted(terminal)) return terminal;
    return {};
}

}  // namespace platform
