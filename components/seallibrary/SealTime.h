// SealTime.h - the times in seals, seal signatures and revocation lists, and their texts.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

// Reads the content of a UTCTime or GeneralizedTime by the number of its digits, whatever its tag
// says: YYMMDDhhmm, YYMMDDhhmmss or YYYYMMDDhhmmss, a fraction (left out of the result), and "Z",
// an offset such as "+0800", or nothing, which counts as "Z". Two-digit years are 1950 to 2049.
// Nothing if it is no such text or no such moment.
std::optional<std::time_t> ReadAsn1Time(std::string_view text);

// "YYYYMMDDhhmmssZ"; empty before the year 0 or after the year 9999.
std::string GeneralizedTimeText(std::time_t time);
// "YYMMDDhhmmssZ"; empty outside the years 1950 to 2049.
std::string UtcTimeText(std::time_t time);
// "YYYY-MM-DDThh:mm:ssZ"; empty as GeneralizedTimeText.
std::string IsoTimeText(std::time_t time);

// Reads a time in the texts that hosts use: "YYYY-MM-DDThh:mm:ss", the same with a blank,
// "YYYY年MM月DD日hh时mm分ss秒" in GBK, "D:YYYYMMDDhhmmss" with whatever behind it, and the forms of
// ReadAsn1Time. Local, unless "Z" or an offset ("+0800", "+08:00") stands at its end; that of the
// "D:" form is left out of account, as the times in documents are the signer's local ones.
std::optional<std::time_t> ReadHostTime(std::string_view text);
