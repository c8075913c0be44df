// SealInfo.h - the eleven fields that TVK_GetSealInfo gives.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "components/seallibrary/Seal.h"

constexpr std::size_t kSealInfoFields = 11;

// Texts without terminators, GBK: 1 the seal's number, 2 the header's version, 3 the vendor's id,
// 4 the seal's type, 5 the SM3 hash of the whole seal (hexadecimal, capital letters), 6 the name,
// 7 the date of making, 8 and 9 begin and end of validity (all "YYYY-MM-DDThh:mm:ssZ"), 10 the
// picture's type, 11 the form ("GM/T 0031-2014"). The first and the fifth together tell a seal
// service which seal is asked about and that it hasn't been replaced by another of that number.
std::array<std::string, kSealInfoFields> SealInfo(const Seal& seal, std::string_view der);

// The standard's number, such as "GB/T 38540-2020".
const char* FormText(SealForm form);
