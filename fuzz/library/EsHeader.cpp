// The old "ES" seal file: what is taken for one has its picture within its bytes.

#include "seal/EsHeader.h"

#include <cstdint>

#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const auto header = ReadEsHeader(file);
    if (!header) return 0;
    REQUIRE(file.starts_with("ES"));
    REQUIRE(header->picture.data() == file.data() + 328);
    REQUIRE(328 + header->picture.size() <= size);
    REQUIRE(!header->name.empty());
    REQUIRE(header->name.find('\0') == std::string::npos);
    return 0;
}
