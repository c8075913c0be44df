// TransportSettings.h - how the online seal service is reached.
#pragma once

#include <cstddef>

#include "components/http/ExchangeSettings.h"

constexpr char kTransportSettingsKey[] = "software\\Velmora\\transport\\";

constexpr unsigned int kDefaultLargestAnswerMib = 64;
constexpr unsigned int kMostLargestAnswerMib = 1024;

struct TransportSettings : ExchangeSettings {
    std::size_t largestAnswer = std::size_t{kDefaultLargestAnswerMib} << 20;  // bytes
};

// Reads the values of ReadExchangeSettings and LargestAnswer under HKEY_LOCAL_MACHINE and
// kTransportSettingsKey afresh. LargestAnswer is a number of MiB: 0 and absence are the default,
// more than kMostLargestAnswerMib is cut to that.
TransportSettings ReadTransportSettings();
