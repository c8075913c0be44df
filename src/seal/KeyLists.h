// KeyLists.h - the lists in text that the service gives: certificates, and the files of a key.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "seal/SealRecord.h"

// What ends a certificate's label, and what ends an entry of either list.
constexpr std::string_view kBehindLabel = "||";
constexpr std::string_view kBehindEntry = "&&&";

// An entry of a list of certificates, as it stands there.
struct ListedCert {
    std::string_view label;
    std::string_view certId;
};

// Takes the entry at `position` of `list` (label "||" identifier "&&&", repeated) and moves on
// behind it; false where no whole entry is left. An end that comes before the bars gives an empty
// identifier and stands in the label.
bool NextListedCert(std::string_view list, std::size_t& position, ListedCert& entry);

// The certificates of `list` (label "||" identifier "&&&", repeated), in its order, without seals.
// The entry of the scan by phone gets its own label and mode 1; certificates of the cloud service
// are left out. What stands behind the last whole entry is none.
std::vector<CertRecord> ReadUserList(std::string_view list);

// Appends the names of seal files in `list` (name "&&&", repeated) to `names`, in its order. False
// if there is no "&&&" at all.
bool ReadFileList(std::string_view list, std::vector<std::string>& names);
