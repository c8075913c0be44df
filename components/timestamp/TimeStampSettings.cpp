#include "components/timestamp/TimeStampSettings.h"

#include <algorithm>
#include <string_view>

#include "foundation/Registry.h"
#include "platform/CodePage.h"

namespace {

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

}  // namespace

TimeStampSettings ReadTimeStampSettings() {
    const CRegistry key(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine,
                                                  kTimeStampSettingsKey,
                                                  platform::RegistryAccess::Read64));
    TimeStampSettings settings{ReadExchangeSettings(key.key)};
    settings.urls = Addresses(platform::Utf8FromAnsi(StoredBytes(key.key, "Url")));
    settings.user = StoredText(key.key, "User");
    settings.password = StoredText(key.key, "Password");
    return settings;
}
