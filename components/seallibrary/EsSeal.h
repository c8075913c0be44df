// EsSeal.h - seal files of the old "ES" layout: a header of 328 bytes and the picture. They carry
// no signature, no validity and no size.
#pragma once

#include <string>
#include <string_view>

// The name takes the bytes from 86 up to the picture at 328, its terminator included.
constexpr std::size_t kEsNameCapacity = 241;

// `nameGbk` without a zero byte and at most kEsNameCapacity bytes long; an empty name leaves the
// seal unnamed. Empty if either limit is broken, or if the picture doesn't fit a 31-bit length.
std::string MakeEsSeal(std::string_view nameGbk, std::string_view picture);
