#include "platform/linux/Places.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace platform {

namespace {

std::string Variable(const char* name) {
    const char* value = secure_getenv(name);
    return value != nullptr ? value : "";
}

std::string WithSeparator(std::string folder) {
    if (!folder.empty() && !folder.ends_with('/')) folder += '/';
    return folder;
}

std::string Home() {
    std::string home = Variable("HOME");
    if (!home.empty()) return home;
    std::vector<char> storage(16384);
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(geteuid(), &entry, storage.data(), storage.size(), &found);
    return found != nullptr && found->pw_dir != nullptr ? found->pw_dir : "";
}

}  // namespace

std::string PrefixFolder() { return WithSeparator(Variable("VELMORA_PREFIX")); }

std::string UserFolder(const char* variable, const char* belowHome) {
    const std::string folder = Variable(variable);
    if (folder.starts_with('/')) return WithSeparator(folder);
    const std::string home = WithSeparator(Home());
    return home.empty() ? "" : WithSeparator(home + belowHome);
}

}  // namespace platform
