// SealStatus.h - whether the seal library's status service permits the use of a seal.
#pragma once

#include <string_view>

// Takes two fields out of the seal's file and has the seal library ask for the status that belongs
// to them. 0 with `permitted`; otherwise the result of the call that failed, -3015 for fields that
// can't be had, and 0 with `permitted` false where a field is empty. Logs nothing.
int RequestSealStatus(std::string_view seal, bool& permitted);
