// FileHash.h - the hash of a file of any size, in little memory.
#pragma once

#include <string>
#include <string_view>

#include "components/crypto/Algorithm.h"

// The hash over `prefix` and then the file, which is read in pieces of 64 KiB. A ServiceCode:
// kServiceFileUnreadable if it can't be opened or read to its end, with `hash` untouched.
int HashFileContent(HashAlgorithm algorithm, std::string_view prefix, const char* path,
                    std::string& hash);
