// PlainTail.h - the end of a PDF, which tells where its newest cross-reference section stands.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Readers look for it in no more than so many bytes at the end of the file.
inline constexpr std::uint64_t kTailLength = 1'024;

// The number after the last "startxref" of a file that ends with `end`. Nothing unless all readers
// find that one and no other: the word, the number and "%%EOF" stand within kTailLength bytes of
// the end with nothing but blanks between them. What follows doesn't matter: some files have a few
// bytes of another program there.
std::optional<std::uint64_t> PlainStartXref(std::string_view end);
