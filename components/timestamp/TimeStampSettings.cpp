#include "components/timestamp/TimeStampSettings.h"

#include <algorithm>
#include <string_view>

#include "foundation/Registry.h"
#include "platform/CodePage.h"
#include "platform/Files.h"

namespace {

using platform::RegistryKey;

using Query = bool (*)(RegistryKey, const char*, void*, std::size_t*);

std::string Bytes(RegistryKey key, const char* name, Query query = platform::QueryRegistryValue) {
    std::size_t size = 0;
    if (key == nullptr || !query(key, name, nullptr, &size)) return {};
    std::string bytes(size, '\0');
    if (!query(key, name, bytes.data(), &size)) return {};
    return bytes;
}

std::string Text(RegistryKey key, const char* name) {
    const std::string bytes = Bytes(key, name);
    return platform::Utf8FromAnsi(std::string_view(bytes).substr(0, bytes.find('\0')));
}

std::string Path(RegistryKey key, const char* name) {
    const std::string bytes = Bytes(key, name, platform::QueryRegistryPath);
    return platform::Utf8FromPath(std::string_view(bytes).substr(0, bytes.find('\0')));
}

std::vector<std::string> Addresses(const std::string& text) {
    constexpr std::string_view kBetween("; \t\r\n\0", 6);
    std::vector<std::string> addresses;
    for (std::size_t at = 0; (at = text.find_first_not_of(kBetween, at)) != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_of(kBetween, at), text.size());
        addresses.push_back(text.substr(at, end - at));
        at = end;
    }
    return addresses;
}

long Milliseconds(CRegistry& key, const char* name, long absent) {
    const unsigned int seconds = key.key != nullptr ? key.GetNumber(name) : 0;
    return seconds == 0 ? absent : 1000L * std::min(seconds, kLongestTimeoutSeconds);
}

}  // namespace

TimeStampSettings ReadTimeStampSettings() {
    CRegistry key(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine,
                                            kTimeStampSettingsKey,
                                            platform::RegistryAccess::Read64));
    TimeStampSettings settings;
    settings.urls = Addresses(platform::Utf8FromAnsi(Bytes(key.key, "Url")));
    settings.user = Text(key.key, "User");
    settings.password = Text(key.key, "Password");
    settings.proxy = Text(key.key, "Proxy");
    settings.caFile = Path(key.key, "CaFile");
    settings.connectTimeoutMs = Milliseconds(key, "ConnectTimeout", kDefaultConnectTimeoutMs);
    settings.timeoutMs = Milliseconds(key, "Timeout", kDefaultTimeoutMs);
    return settings;
}
