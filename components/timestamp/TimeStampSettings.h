// TimeStampSettings.h - which time-stamp authorities are asked, and how.
#pragma once

#include <string>
#include <vector>

#include "components/http/ExchangeSettings.h"

constexpr char kTimeStampSettingsKey[] = "software\\Velmora\\timestamp\\";

// Texts are UTF-8; the times are those of one authority's exchange.
struct TimeStampSettings : ExchangeSettings {
    std::vector<std::string> urls{};  // in the order in which they are tried
    std::string user{};               // empty: no authentication
    std::string password{};
};

// Reads the values Url, User and Password under HKEY_LOCAL_MACHINE and kTimeStampSettingsKey, and
// those of ReadExchangeSettings, afresh. Url holds addresses with ";" or white space between them,
// or is a multi-string of them.
TimeStampSettings ReadTimeStampSettings();
