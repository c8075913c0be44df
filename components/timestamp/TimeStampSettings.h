// TimeStampSettings.h - which time-stamp authorities are asked, and how.
#pragma once

#include <string>
#include <vector>

constexpr char kTimeStampSettingsKey[] = "software\\Velmora\\timestamp\\";

constexpr long kDefaultConnectTimeoutMs = 10'000;
constexpr long kDefaultTimeoutMs = 30'000;
constexpr unsigned int kLongestTimeoutSeconds = 600;

// Texts are UTF-8.
struct TimeStampSettings {
    std::vector<std::string> urls{};  // in the order in which they are tried
    std::string user{};               // empty: no authentication
    std::string password{};
    std::string proxy{};   // empty: libcurl's rule, which heeds the environment
    std::string caFile{};  // PEM; empty: the certificates that the system trusts
    long connectTimeoutMs = kDefaultConnectTimeoutMs;
    long timeoutMs = kDefaultTimeoutMs;  // of one authority's whole exchange
};

// Reads the values Url, User, Password, Proxy, CaFile, ConnectTimeout and Timeout under
// HKEY_LOCAL_MACHINE and kTimeStampSettingsKey afresh. Url holds addresses with ";" or white space
// between them, or is a multi-string of them. The times are numbers of seconds: 0 and absence are
// the default, more than kLongestTimeoutSeconds is cut to that.
TimeStampSettings ReadTimeStampSettings();
