// RecordText.h - what others have worded, as a part of a record of the log.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Bytes of UTF-8, so that a message with some of them stays far below the length at which the
// logger leaves it out.
constexpr std::size_t kLongestRecordText = 600;

// One line of the ANSI code page: no more than kLongestRecordText bytes of `utf8`, cut between two
// characters, with a blank for each control character. A server's text can't begin records of its
// own, nor fill the log.
std::string RecordText(std::string_view utf8);
