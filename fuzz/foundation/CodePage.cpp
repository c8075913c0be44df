// Code page conversions: neither direction fails, the outcome is well formed, and what came out of
// one goes through both again unchanged.

#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/driver/Require.h"
#include "platform/CodePage.h"

using platform::AnsiFromUtf8;
using platform::Utf8FromAnsi;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string ansi = AnsiFromUtf8(input);
    REQUIRE(ansi.size() <= size);
    REQUIRE(AnsiFromUtf8(Utf8FromAnsi(ansi)) == ansi);
    const std::string utf8 = Utf8FromAnsi(input);
    REQUIRE(utf8.size() <= 3 * size);
    REQUIRE(Utf8FromAnsi(AnsiFromUtf8(utf8)) == utf8);
    return 0;
}
