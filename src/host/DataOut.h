// DataOut.h - the forms in which exports hand data to the host, each written once. Form 3 hands the
// host's pair on; form 4 is form 5's copy behind its own work.
#pragma once

#include <string_view>

#include "foundation/StateString.h"

// Form 1: the size for a null `out`; -3015 with `*outLen` left alone if it is too small a capacity.
int CopyOutChecked(std::string_view data, unsigned char* out, int* outLen);

// Form 2: as form 1 without a look at `*outLen`.
int CopyOutUnchecked(std::string_view data, unsigned char* out, int* outLen);

// Form 5: the size for a null `out`, else exactly `*outLen` bytes. An empty state touches nothing.
// Always 0.
int CopyOutState(StateString& state, unsigned char* out, int* outLen);
