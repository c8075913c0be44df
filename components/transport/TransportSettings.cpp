#include "components/transport/TransportSettings.h"

#include <algorithm>

TransportSettings ReadTransportSettings() {
    CRegistry key(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine,
                                            kTransportSettingsKey,
                                            platform::RegistryAccess::Read64));
    TransportSettings settings{ReadExchangeSettings(key)};
    const unsigned int mib = key.GetNumber("LargestAnswer");
    if (mib != 0) {
        settings.largestAnswer = std::size_t{std::min(mib, kMostLargestAnswerMib)} << 20;
    }
    return settings;
}
