// KeyLists.h - the two lists in text of which an enumeration is made.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "seal/SealRecord.h"

// What every list of certificates holds.
constexpr std::string_view kBehindLabel = "||";

// The certificates of `list` (label "||" identifier "&&&", repeated), in its order, without seals.
// The entry of the scan by phone gets its own label and mode 1; certificates of the cloud service
// are left out. What stands behind the last whole entry is none.
std::vector<CertRecord> ReadUserList(std::string_view list);

// Appends the names of seal files in `list` (name "&&&", repeated) to `names`, in its order. False
// if there is no "&&&" at all.
bool ReadFileList(std::string_view list, std::vector<std::string>& names);
