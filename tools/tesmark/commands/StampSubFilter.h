// StampSubFilter.h - what stands in a PDF signature for each kind of signature.
#pragma once

#include <cstddef>
#include <string_view>

struct StampSubFilter {
    const char* filter;
    const char* subFilter;
};

// A seal signature, by what GetEsealMode tells.
constexpr bool IsSealSignature(int mode) { return mode == 1 || mode == 2; }

// `mode` as GetEsealMode: 0 a PKCS#7, 1 a seal signature of GM/T 0031, 2 one of GB/T 38540. Of the
// online service's seals 1 tells only that they are of a national form: which, `seal` does, the
// seal's file.
const StampSubFilter& SubFilterOf(int mode, std::string_view seal);

// Bytes to set aside for the signature. What a component makes may be larger; each reader of the
// document goes through all that is left over. A seal signature holds the whole seal, its file
// `seal`.
std::size_t ContentsSizeFor(int mode, std::string_view seal, bool timeStamped);
