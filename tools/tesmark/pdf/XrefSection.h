// XrefSection.h - a cross-reference section of an incremental update, read strictly.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>

struct XrefEntry {
    enum class Kind { kFree, kInUse, kInStream };
    Kind kind = Kind::kFree;
    std::uint64_t place = 0;  // the offset in use, or the number of the stream of objects
    int generation = 0;       // or the index in the stream
};

// Offsets count from "%PDF-".
struct XrefSection {
    std::uint64_t at = 0;
    std::uint64_t end = 0;
    std::uint64_t previous = 0;
    std::uint64_t size = 0;  // greater than each number below
    std::map<int, XrefEntry> entries;
    // A stream is an object itself, and a table has a trailer; 0 for what there isn't.
    int stream = 0;
    std::uint64_t trailer = 0;
};

// The section at that offset of `document`, which begins with "%PDF-". Nothing unless all readers
// understand it alike: entries of a table take exactly 20 bytes, no number has two, the trailer has
// no key twice, one /Prev in front of the section and a /Size above its numbers; a table has no
// /XRefStm, and of a stream the lengths fit its data. Streams are decoded with qpdf, within the
// bounds of InflateLimit.h. May throw what qpdf throws.
std::optional<XrefSection> ReadXrefSection(std::string_view document, std::uint64_t at);
