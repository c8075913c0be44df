// SealStatus.h - asks a seal service whether a seal may still be used. docs/sealserver.md tells the
// request and the answers.
#pragma once

#include <string>
#include <string_view>

// What is asked about has no more bytes.
constexpr std::size_t kMaxStatusField = 1024;

// `address` is that of the service, http or https; `number` and `hash` are fields 1 and 5 of
// TVK_GetSealInfo. All are ANSI text. Only the service's "valid" gives kSealOk; its other words are
// kSealStatusUnknown, kSealStatusSuspended and kSealStatusReplaced. Where none came:
// kSealNoStatusService (an empty address), kSealStatusBadAddress, kSealStatusUnreachable,
// kSealStatusBadAnswer; kSealBadArgument for an empty field, kSealTooLarge for a long one.
//
// Proxy, certificates and time-outs are those of ReadSealServiceSettings, read afresh; blocks for
// that time-out at the most. A failure is told in `fault`, a clause that RecordText
// has made fit for the log: a server words a part of it.
int AskSealStatus(std::string_view address, std::string_view number, std::string_view hash,
                  std::string& fault);
