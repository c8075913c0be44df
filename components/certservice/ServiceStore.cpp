#include "components/certservice/ServiceStore.h"

#include "components/certservice/Places.h"
#include "platform/RegistryStore.h"

namespace {

class ServiceKey {
public:
    ServiceKey()
        : m_key(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine,
                                          kCertServiceSettingsKey,
                                          platform::RegistryAccess::Read64)) {}
    ~ServiceKey() {
        if (m_key) platform::CloseRegistryKey(m_key);
    }
    ServiceKey(const ServiceKey&) = delete;
    ServiceKey& operator=(const ServiceKey&) = delete;

    platform::RegistryKey Get() const { return m_key; }

private:
    platform::RegistryKey m_key;
};

}  // namespace

std::string ReadStorePath(const char* name) {
    const ServiceKey key;
    std::size_t size = 0;
    if (!key.Get()) return {};
    platform::QueryRegistryPath(key.Get(), name, nullptr, &size);
    std::string path(size, '\0');
    if (size == 0 || !platform::QueryRegistryPath(key.Get(), name, path.data(), &size)) return {};
    return path.substr(0, path.find('\0'));
}

unsigned int ReadStoreNumber(const char* name) {
    const ServiceKey key;
    unsigned int number = 0;
    std::size_t size = sizeof number;
    if (!key.Get() || !platform::QueryRegistryValue(key.Get(), name, &number, &size)) return 0;
    return size == sizeof number ? number : 0;
}
