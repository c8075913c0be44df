#include "components/certservice/ServiceSettings.h"

#include <stdexcept>

#include "platform/RegistryStore.h"

namespace {

platform::RegistryKey ServiceKey() {
    return platform::CreateRegistryKey(
        platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
        "software\\Velmora\\certservice");
}

}  // namespace

void SetServicePath(const char* name, const std::string& path) {
    const platform::RegistryKey key = ServiceKey();
    if (!key || !platform::SetRegistryPath(key, name, path)) throw std::runtime_error(name);
    platform::CloseRegistryKey(key);
}

void SetServiceNumber(const char* name, unsigned int number) {
    const platform::RegistryKey key = ServiceKey();
    if (!key || !platform::SetRegistryNumber(key, name, number)) throw std::runtime_error(name);
    platform::CloseRegistryKey(key);
}
