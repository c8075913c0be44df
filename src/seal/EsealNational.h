// EsealNational.h - what the seal library tells of a seal of either national format.
#pragma once

#include <string>
#include <string_view>

#include "foundation/HeapBuffer.h"

// Both return 0, a code of the seal library, or -3015 for a size that can't be had.

// The picture in size and fetch; its size as the seal tells it goes to `*width` and `*height`.
int ReadNationalPicture(std::string_view seal, CBuffer& picture, int* width, int* height);

// The name in GBK with `suffix` behind it; the suffix alone for a name that can't be converted.
// The result of the size query doesn't count.
int ReadNationalName(std::string_view seal, const char* suffix, std::string& name);
