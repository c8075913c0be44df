#include "foundation/Registry.h"

namespace {

// The buffer is larger than the size that is stated to the store: values beyond 200 bytes count as
// not configured, and no reader may raise that.
constexpr std::size_t kTextBuffer = 2550;
constexpr std::size_t kTextLimit = 200;

}  // namespace

CRegistry::~CRegistry() {
    if (key != nullptr) platform::CloseRegistryKey(key);
    key = nullptr;
}

int CRegistry::CreateKey() {
    const platform::RegistryKey created = platform::CreateRegistryKey(key, kCrlTimesKey);
    if (created == nullptr) return 0;
    platform::CloseRegistryKey(key);
    key = created;
    return 1;
}

int CRegistry::SetString(const char* name, const std::string& text) {
    return platform::SetRegistryString(key, name, text) ? 1 : 0;
}

int CRegistry::GetString(const char* name, std::string& text) {
    char buffer[kTextBuffer] = {};
    std::size_t size = kTextLimit;
    if (!platform::QueryRegistryValue(key, name, buffer, &size)) return 0;
    text = buffer;
    return 1;
}

unsigned int CRegistry::GetNumber(const char* name, unsigned int absent) {
    unsigned int number = absent;
    std::size_t size = sizeof number;
    return platform::QueryRegistryValue(key, name, &number, &size) ? number : absent;
}

CRegistry OpenSettings() {
    return CRegistry(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine, kSettingsKey,
                                               platform::RegistryAccess::AllAccess));
}

unsigned int ReadNumberSetting(const char* name) { return OpenSettings().GetNumber(name); }

std::string ReadTextSetting(const char* name) {
    std::string text;
    OpenSettings().GetString(name, text);
    return text;
}
