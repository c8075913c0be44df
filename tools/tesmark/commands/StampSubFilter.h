// StampSubFilter.h - what stands in a PDF signature for each kind of signature.
#pragma once

#include <cstddef>

struct StampSubFilter {
    const char* filter;
    const char* subFilter;
};

// `mode` as GetEsealMode: 0 a PKCS#7, 1 a seal signature of GM/T 0031, 2 one of GB/T 38540. Of the
// online service's seals 1 tells only that they are of a national form: which, the seal does that
// is selected in the library.
const StampSubFilter& SubFilterOf(int mode);

// Bytes to set aside for the signature with the seal that is selected in the library: a seal
// signature holds the whole seal.
std::size_t ContentsSizeFor(int mode);
