#include "components/http/ExchangeSettings.h"

#include <algorithm>
#include <string_view>

#include "platform/CodePage.h"
#include "platform/Files.h"

namespace {

using platform::RegistryKey;

using Query = bool (*)(RegistryKey, const char*, void*, std::size_t*);

std::string Bytes(RegistryKey key, const char* name, Query query) {
    std::size_t size = 0;
    if (key == nullptr || !query(key, name, nullptr, &size)) return {};
    std::string bytes(size, '\0');
    if (!query(key, name, bytes.data(), &size)) return {};
    return bytes;
}

std::string Path(RegistryKey key, const char* name) {
    const std::string bytes = Bytes(key, name, platform::QueryRegistryPath);
    return platform::Utf8FromPath(std::string_view(bytes).substr(0, bytes.find('\0')));
}

long Milliseconds(RegistryKey key, const char* name, long absent) {
    const unsigned int seconds = StoredNumber(key, name);
    return seconds == 0 ? absent : 1000L * std::min(seconds, kLongestTimeoutSeconds);
}

}  // namespace

std::string StoredBytes(RegistryKey key, const char* name) {
    return Bytes(key, name, platform::QueryRegistryValue);
}

std::string StoredText(RegistryKey key, const char* name) {
    const std::string bytes = StoredBytes(key, name);
    return platform::Utf8FromAnsi(std::string_view(bytes).substr(0, bytes.find('\0')));
}

unsigned int StoredNumber(RegistryKey key, const char* name) {
    unsigned int number = 0;
    std::size_t size = sizeof number;
    if (key == nullptr || !platform::QueryRegistryValue(key, name, &number, &size)) return 0;
    return number;
}

ExchangeSettings ReadExchangeSettings(RegistryKey key) {
    ExchangeSettings settings;
    settings.proxy = StoredText(key, "Proxy");
    settings.caFile = Path(key, "CaFile");
    settings.connectTimeoutMs = Milliseconds(key, "ConnectTimeout", kDefaultConnectTimeoutMs);
    settings.timeoutMs = Milliseconds(key, "Timeout", kDefaultTimeoutMs);
    return settings;
}
