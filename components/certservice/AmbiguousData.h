// AmbiguousData.h - data whose signature would be one of something else as well.
#pragma once

#include <string_view>

// Where nothing but the data is signed, as in a message without signed attributes, the same value
// is a signature wherever these very bytes are what is signed. True for data that have, as a whole,
// the form of
// - the signed attributes of a message (RFC 5652, section 5.4): a SET with a messageDigest, which
//   would make it a signature over any data;
// - the part of a seal signature that its signer signs (GM/T 0031, GB/T 38540): SEQUENCE { version,
//   seal, time, BIT STRING, text, ... };
// - the part of a seal that its maker signs: SEQUENCE { header "ES", ... }, or one that begins with
//   such. The "ES" may be of any type.
// BER counts as well as DER: readers take what was signed as it came in.
// No document in a format of its own begins like that.
bool IsAmbiguous(std::string_view data);
