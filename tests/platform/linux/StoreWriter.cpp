// StoreWriter: another process at the registry store.
//
//   values NAME COUNT    writes that many numbers below the product's key, NAME0, NAME1, ...
//   user                 makes a key of the user's
//   unprivileged         gives up root's rights, prints the value "n" of HKLM\a and what a write
//                        came to; 4 if there are no rights to give up

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/RegistryStore.h"

using namespace platform;

namespace {

int WriteValues(const std::string& name, int count) {
    const RegistryKey key = CreateRegistryKey(RegistryRootKey(RegistryRoot::LocalMachine),
                                              "software\\Velmora\\fenmoor");
    if (key == nullptr) return 1;
    bool written = true;
    for (int i = 0; i < count && written; ++i) {
        written = SetRegistryNumber(key, (name + std::to_string(i)).c_str(), 1);
    }
    CloseRegistryKey(key);
    return written ? 0 : 1;
}

int MakeUserKey() {
    const RegistryKey key = CreateRegistryKey(RegistryRootKey(RegistryRoot::CurrentUser), "a");
    CloseRegistryKey(key);
    return key != nullptr ? 0 : 1;
}

int TryWithoutRights() {
    constexpr unsigned int kNobody = 65534;
    if (geteuid() != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) return 4;
    const RegistryKey key =
        OpenRegistryKey(RegistryRoot::LocalMachine, "a", RegistryAccess::AllAccess);
    if (key == nullptr) return 1;
    char text[16] = {};
    std::size_t size = sizeof text;
    QueryRegistryValue(key, "n", text, &size);
    std::printf("%s\n%s\n", text, SetRegistryString(key, "n", "y") ? "written" : "failed");
    CloseRegistryKey(key);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string action = count > 1 ? arguments[1] : "";
    if (action == "values" && count == 4) return WriteValues(arguments[2], std::atoi(arguments[3]));
    if (action == "user") return MakeUserKey();
    if (action == "unprivileged") return TryWithoutRights();
    return 2;
}
