// StrayObjects.h - what a reader finds that goes through the bytes instead of the tables.
#pragma once

#include <cstdint>
#include <set>
#include <string_view>

// Whether each "1 0 obj" and each "trailer" that begins in `document` from `begin` on stands at one
// of `known`, which hold the places of the words "obj" and "trailer". What a stream or a comment
// says counts too: who searches doesn't know where one begins.
bool StandOnlyAt(std::string_view document, std::uint64_t begin,
                 const std::set<std::uint64_t>& known);
