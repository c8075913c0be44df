// SignatureTime.h - the times in signatures, as moments and as local text.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

// A PDF's date (ISO 32000-2, 7.9.4): "D:20261121092127+08'00'" and its shorter forms; without an
// offset it is taken as local. None if it is no such text or no such moment.
std::optional<std::time_t> ReadPdfTime(std::string_view text);

// "2026-11-21 09:21:27", local: the form in which the library takes a time.
std::string LocalTimeText(std::time_t time);

// The same of a certificate's or token's "20261121092127..."; another text as it stands.
std::string SpacedTime(const std::string& digits);
