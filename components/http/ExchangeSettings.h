// ExchangeSettings.h - how a component's HTTP exchanges get through: proxy, certificates, time.
#pragma once

#include <string>

#include "foundation/Registry.h"

constexpr long kDefaultConnectTimeoutMs = 10'000;
constexpr long kDefaultTimeoutMs = 30'000;
constexpr unsigned int kLongestTimeoutSeconds = 600;

// Texts are UTF-8.
struct ExchangeSettings {
    std::string proxy{};   // empty: libcurl's rule, which heeds the environment
    std::string caFile{};  // PEM, trusted alone; empty: what the system trusts
    long connectTimeoutMs = kDefaultConnectTimeoutMs;
    long timeoutMs = kDefaultTimeoutMs;  // of one whole exchange
};

// Reads the values Proxy, CaFile, ConnectTimeout and Timeout of `key` afresh, which may be null.
// The times are numbers of seconds: 0 and absence are the default, more than kLongestTimeoutSeconds
// is cut to that.
ExchangeSettings ReadExchangeSettings(CRegistry& key);
