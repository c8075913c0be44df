// A request's beginning as it comes in: whatever the bytes, what passes is within its bounds.

#include "tools/sealserver/RequestHead.h"

#include <cstdint>

#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t end = EndOfHead(bytes);
    REQUIRE(end <= size);
    // Wherever a piece ended, the end is found in the same place.
    for (std::size_t known = 0; known < end; known += 1 + end / 16)
        REQUIRE(EndOfHead(bytes, known) == end);
    const std::string_view head = bytes.substr(0, end > 0 ? end : size);
    const RequestLine line = LineOf(head);
    REQUIRE(line.method.size() + line.target.size() <= head.size());
    if (StatusOfRefusedHead(head) != 0) return 0;
    REQUIRE(head.size() <= kMaxHeadBytes);
    REQUIRE(line.target.size() <= kLongestTarget);
    REQUIRE(head.find("\nRange:") == head.npos);
    return 0;
}
