// StampMessage.h - where a signed message carries its time stamp: the unsigned attribute
// id-aa-timeStampToken (RFC 3161, appendix A) of its first signer.
#pragma once

#include <string>
#include <string_view>

// `message` with `token` (DER) as the first signer's only time stamp. Every other part keeps its
// bytes: signed attributes in an order of their own still verify. Bytes behind the message are
// dropped. Empty if `message` isn't a signed message with a signer.
std::string StampMessage(std::string_view message, std::string_view token);
