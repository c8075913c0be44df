// Engine.h - the engine's one operation: a time-stamp request is put to one authority after
// another.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/timestamp/TimeStampSettings.h"

struct EngineRecord {
    int level;  // a LogLevel
    std::string text;
};

struct EngineOutcome {
    std::optional<std::string> response{};  // in Base64
    std::vector<EngineRecord> records{};    // what happened, one record to an authority
};

// The first response that fits the request; an authority is asked once the one before has failed.
// None if there is no request in `requestBase64`, no authority is set, or all have failed. Records
// are made by RecordText, without a password.
EngineOutcome AskAuthorities(const TimeStampSettings& settings, std::string_view requestBase64);

// The same with the machine's settings, with its records in the log. Never throws: what can't go on
// for want of memory is a failure like any other.
std::optional<std::string> CreateTimeStamp(std::string_view requestBase64) noexcept;
