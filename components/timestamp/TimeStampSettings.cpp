#include "components/timestamp/TimeStampSettings.h"

#include "components/http/Address.h"
#include "components/http/StoredText.h"
#include "foundation/Registry.h"
#include "platform/CodePage.h"

TimeStampSettings ReadTimeStampSettings() {
    CRegistry key(platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine,
                                            kTimeStampSettingsKey,
                                            platform::RegistryAccess::Read64));
    TimeStampSettings settings{ReadExchangeSettings(key)};
    settings.urls = SplitAddresses(platform::Utf8FromAnsi(StoredBytes(key.key, "Url")));
    settings.user = StoredText(key.key, "User");
    settings.password = StoredText(key.key, "Password");
    return settings;
}
