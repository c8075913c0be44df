// RequestHead.h - how much a request may ask before anything else of it is looked at.
#pragma once

#include <cstddef>
#include <string_view>

// Of the request's line and its header fields, with the empty line behind them.
constexpr std::size_t kMaxHeadBytes = 16u << 10;
constexpr std::size_t kMostHeadLines = 100;
// The address as it stands in the request's line, query included.
constexpr std::size_t kLongestTarget = 1024;

// Behind the empty line that ends the head; 0 while it isn't there yet. What stands before `known`
// has been looked through already.
std::size_t EndOfHead(std::string_view bytes, std::size_t known = 0);

// The status with which a whole head, or the beginning of one that is too long, is refused before
// it is parsed; 0 for none. 414: the target is too long. 431: there are too many bytes or lines.
// 416: a part is asked for. Answers are small or wanted whole, and a few bytes of "Range" would
// have one sent thousands of times over.
int StatusOfRefusedHead(std::string_view head);

// The parts of the request's line, for the log; empty where it has none. The target may be cut.
struct RequestLine {
    std::string_view method;
    std::string_view target;
};
RequestLine LineOf(std::string_view head);
