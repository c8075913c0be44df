// Prints the tables of code page 936 as C++, from the C library's converter on the machine that
// builds: converters can be absent where the library runs, and a table is faster.

#include <iconv.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>

#include "platform/linux/GbkTables.h"

using namespace platform;

namespace {

std::optional<std::uint16_t> Unicode(iconv_t converter, unsigned int lead, unsigned int trail) {
    char bytes[] = {static_cast<char>(lead), static_cast<char>(trail)};
    unsigned char wide[4] = {};
    char* in = bytes;
    char* out = reinterpret_cast<char*>(wide);
    std::size_t inLeft = sizeof bytes;
    std::size_t outLeft = sizeof wide;
    const bool converted = iconv(converter, &in, &inLeft, &out, &outLeft) == 0 && outLeft == 2;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    if (!converted) return std::nullopt;
    return static_cast<std::uint16_t>(wide[0] << 8 | wide[1]);
}

// Prints "{...}," with what at(0), at(1) and so on tell.
template <typename At>
void PrintNumbers(std::size_t count, At at) {
    std::printf("{");
    for (std::size_t i = 0; i < count; ++i) {
        std::printf("%s0x%04X,", i % 16 == 0 ? "\n" : "", static_cast<unsigned int>(at(i)));
    }
    std::printf("\n}");
}

}  // namespace

int main() {
    const iconv_t converter = iconv_open("UTF-16BE", "GBK");
    if (converter == reinterpret_cast<iconv_t>(-1)) return 1;
    std::map<std::size_t, std::uint16_t> toUnicode;
    std::map<std::size_t, std::map<std::size_t, std::uint16_t>> pages;
    // The code page has the euro sign in one byte, which the C library's GBK lacks.
    pages[0x20][0xAC] = kGbkEuro;
    for (unsigned int lead = kGbkFirstLead; lead <= kGbkLastLead; ++lead) {
        for (unsigned int trail = kGbkFirstTrail; trail <= kGbkLastTrail; ++trail) {
            const auto code = Unicode(converter, lead, trail);
            if (!code) continue;
            toUnicode[GbkIndex(lead, trail)] = *code;
            pages[*code >> 8].emplace(*code & 0xFF, lead << 8 | trail);
        }
    }
    iconv_close(converter);
    if (toUnicode.size() < 20000) return 1;

    std::printf("#include \"platform/linux/GbkTables.h\"\n\nnamespace platform {\n\n");
    std::printf("const std::uint16_t kUnicodeOfGbk[kGbkPairs] = ");
    PrintNumbers(kGbkPairs, [&](std::size_t i) { return toUnicode[i]; });
    std::printf(";\n\nconst std::uint8_t kGbkPageOfUnicode[256] = ");
    std::map<std::size_t, std::size_t> numbers;
    for (const auto& page : pages) numbers.emplace(page.first, numbers.size() + 1);
    PrintNumbers(256, [&](std::size_t i) { return numbers.contains(i) ? numbers[i] : 0; });
    std::printf(";\n\nconst std::uint16_t kGbkOfUnicode[][256] = {\n{},\n");
    for (auto& page : pages) {
        PrintNumbers(256, [&](std::size_t i) { return page.second[i]; });
        std::printf(",\n");
    }
    std::printf("};\n\n}  // namespace platform\n");
}
