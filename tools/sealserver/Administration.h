// Administration.h - what an administrator does with the store, by the page and by the command
// line.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "tools/sealserver/SealStore.h"

// Why something can't be done, as a sentence for the administrator, in UTF-8.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A certificate by its file, or by the two texts where the file is empty; the new one's id, or that
// of the one that is there. A Refusal for a file without a certificate, for both or neither of the
// two ways, for a serial number without a digit, and for texts that aren't UTF-8, have control
// characters or more than 2048 bytes.
std::int64_t EnterCertificate(SealStore& store, const std::string& file, const std::string& serial,
                              const std::string& name);

struct SealEntry {
    std::string file;
    std::string number;  // empty: the seal's own; of an "ES" file the first free one from 1
    std::string name;    // empty: the seal's own
};

// The new seal's id. A Refusal for a file that is no seal, for a number that the certificate has
// already, for a file that it has already where no number is given, and for texts as above, of 200
// bytes at the most.
std::int64_t EnterSeal(SealStore& store, std::int64_t certificate, const SealEntry& entry);

// WarningAbout a seal of the store and its certificate; empty where either is gone.
std::string WarningAboutSeal(SealStore& store, std::int64_t seal);
