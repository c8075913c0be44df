// The registry text: whatever the file holds, a value that is set comes back, nothing else changes,
// and it can be removed again.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/driver/Require.h"
#include "platform/RegText.h"

using platform::RegText;

namespace {

constexpr std::string_view kKey = "HKEY_LOCAL_MACHINE\\software\\Velmora\\fenmoor\\";
constexpr std::string_view kOther = "HKEY_CLASSES_ROOT\\a";

std::optional<std::string> BytesOf(const RegText& text, std::string_view key,
                                   std::string_view name) {
    const auto value = text.Find(key, name);
    return value ? std::optional(value->bytes) : std::nullopt;
}

void CheckSet(const RegText& before, std::string_view name, const std::string& literal,
              std::string_view expected) {
    RegText text = before;
    REQUIRE(text.Set(kKey, name, literal));
    REQUIRE(before.FirstStrayLine() != 0 || text.FirstStrayLine() == 0);
    REQUIRE(BytesOf(text, kKey, name) == expected);
    REQUIRE(text.HasKey(kKey));
    for (const std::string_view other : {"sWSURL", "b", ""}) {
        if (other == name) continue;
        REQUIRE(BytesOf(text, kKey, other) == BytesOf(before, kKey, other));
    }
    REQUIRE(BytesOf(text, kOther, "b") == BytesOf(before, kOther, "b"));
    const std::string once = text.Contents();
    REQUIRE(text.Set(kKey, name, literal));
    REQUIRE(text.Contents() == once);
    REQUIRE(text.Remove(kKey, name));
    REQUIRE(!text.Find(kKey, name));
    REQUIRE(!text.Remove(kKey, name));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const RegText text{std::string(input)};
    CheckSet(text, "sWSURL", RegText::TextLiteral("a \"quoted\" \\ path\\"),
             "a \"quoted\" \\ path\\");
    CheckSet(text, "b", RegText::NumberLiteral(0x01020304), "\x04\x03\x02\x01");
    CheckSet(text, "", RegText::RawLiteral(input.substr(0, 64)), input.substr(0, 64));

    const std::string_view line = input.substr(0, input.find('\n'));
    if (RegText::IsLine(line)) CheckSet(text, "new", RegText::TextLiteral(line), line);
    RegText named = text;
    if (named.Set(kKey, line, RegText::NumberLiteral(1))) REQUIRE(named.Find(kKey, line));
    RegText keyed = text;
    if (keyed.AddKey(line)) REQUIRE(keyed.HasKey(line));
    return 0;
}
