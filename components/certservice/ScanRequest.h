// ScanRequest.h - the request for a scan by phone, which a host puts in the place of a PIN.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// What the request tells. Its other five members are the same in every request.
struct ScanRequest {
    std::string appId;  // the host's application id, UTF-8; may be empty
};

// No request is anywhere near this; what is longer isn't decoded.
constexpr std::size_t kLongestScanRequest = 64 * 1024;

// Reads Base64 (RFC 4648, section 4) of a JSON object (RFC 8259) with exactly these members, all of
// them strings: `type` and `showselectcertwnd`, both "1"; `cardid`, `cardname` and `cardimage`, all
// empty; `appid`, any text. `request` stays as it was on failure. The first that applies:
// - kServiceScanNotBase64: not Base64 in its one form, padded and without white space, or longer
//   than kLongestScanRequest
// - kServiceScanNotJson: not one JSON object, with nothing but white space around it and no name
//   in it twice, or not in UTF-8
// - kServiceScanMemberMissing, kServiceScanMemberKind (it is no string), kServiceScanMemberSurplus
// - kServiceScanMemberValue: another text than the one above
int ReadScanRequest(std::string_view pin, ScanRequest& request);
