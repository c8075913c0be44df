// ExchangeSettings.h - how a component's HTTP exchanges get through: proxy, certificates, time.
#pragma once

#include <string>

#include "platform/RegistryStore.h"

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
ExchangeSettings ReadExchangeSettings(platform::RegistryKey key);

// A value of any length: its bytes as they are, or its text up to the first zero byte, in UTF-8.
// Empty if it is absent or `key` is null.
std::string StoredBytes(platform::RegistryKey key, const char* name);
std::string StoredText(platform::RegistryKey key, const char* name);

// A value that is a number; 0 if it is absent or `key` is null.
unsigned int StoredNumber(platform::RegistryKey key, const char* name);
