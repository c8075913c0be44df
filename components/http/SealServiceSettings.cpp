#include "components/http/SealServiceSettings.h"

#include <algorithm>

SealServiceSettings ReadSealServiceSettings() {
    CRegistry key(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine,
                                            kSealServiceSettingsKey,
                                            platform::RegistryAccess::Read64));
    SealServiceSettings settings{ReadExchangeSettings(key)};
    const unsigned int mib = key.GetNumber("LargestAnswer");
    if (mib != 0) {
        settings.largestAnswer = std::size_t{std::min(mib, kMostLargestAnswerMib)} << 20;
    }
    return settings;
}
