#include "components/http/ExchangeSettings.h"

#include <algorithm>

#include "components/http/StoredText.h"

namespace {

long Milliseconds(CRegistry& key, const char* name, long absent) {
    const unsigned int seconds = key.GetNumber(name);
    return seconds == 0 ? absent : 1000L * std::min(seconds, kLongestTimeoutSeconds);
}

}  // namespace

ExchangeSettings ReadExchangeSettings(CRegistry& key) {
    ExchangeSettings settings;
    settings.proxy = StoredText(key.key, "Proxy");
    settings.caFile = StoredPath(key.key, "CaFile");
    settings.connectTimeoutMs = Milliseconds(key, "ConnectTimeout", kDefaultConnectTimeoutMs);
    settings.timeoutMs = Milliseconds(key, "Timeout", kDefaultTimeoutMs);
    return settings;
}
