// MessageShape.h - what OpenSSL's decoder leaves out of account in a signed message, and no
// signature is over.
#pragma once

#include <string_view>

// True if every SEQUENCE and SET, and every part with a tag of its own that is one, says that it is
// constructed (X.690, sections 8.9 and 8.11), however deep, and octets in pieces are pieces of
// octets. False as well for what is no signed message.
bool HasMessageShape(std::string_view message);
