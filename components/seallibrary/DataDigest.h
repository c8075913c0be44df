// DataDigest.h - the hash of the signed data, from memory, from Base64 or from a file.
#pragma once

#include <string>
#include <string_view>

#include "components/seallibrary/SealVerdict.h"

// What the result refers to must live as long as the result.
DataDigest DigestOfData(std::string_view data);
// The file is read piece by piece, once for each call. kSealFileUnreadable if it can't be.
DataDigest DigestOfFile(const std::string& path);
