// A target with a fault that only a mutation of its seed reaches.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    REQUIRE(input.size() < 8 || input.find(';') == input.npos);
    return 0;
}
