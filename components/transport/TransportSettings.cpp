#include "components/transport/TransportSettings.h"

#include <algorithm>

#include "foundation/Registry.h"

TransportSettings ReadTransportSettings() {
    const CRegistry key(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine,
                                                  kTransportSettingsKey,
                                                  platform::RegistryAccess::Read64));
    TransportSettings settings{ReadExchangeSettings(key.key)};
    const unsigned int mib = StoredNumber(key.key, "LargestAnswer");
    if (mib != 0) {
        settings.largestAnswer = std::size_t{std::min(mib, kMostLargestAnswerMib)} << 20;
    }
    return settings;
}
