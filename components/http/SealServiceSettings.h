// SealServiceSettings.h - how the online seal service is reached, by the transport for stamps and
// by the seal library for a seal's status.
#pragma once

#include <cstddef>

#include "components/http/ExchangeSettings.h"

// Of the time when the transport alone had them.
constexpr char kSealServiceSettingsKey[] = "software\\Velmora\\transport\\";

constexpr unsigned int kDefaultLargestAnswerMib = 64;
constexpr unsigned int kMostLargestAnswerMib = 1024;

struct SealServiceSettings : ExchangeSettings {
    std::size_t largestAnswer = std::size_t{kDefaultLargestAnswerMib} << 20;  // bytes
};

// Reads the values of ReadExchangeSettings and LargestAnswer under HKEY_LOCAL_MACHINE and
// kSealServiceSettingsKey afresh. LargestAnswer is a number of MiB: 0 and absence are the default,
// more than kMostLargestAnswerMib is cut to that.
SealServiceSettings ReadSealServiceSettings();
