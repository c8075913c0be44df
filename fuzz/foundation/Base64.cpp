// Base64 against OpenSSL: what is encoded must be its text and come back, and a text that it takes
// as whole groups must decode alike.

#include <openssl/evp.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Text.h"
#include "fuzz/driver/Require.h"

namespace {

std::string PeerEncode(std::string_view data) {
    std::vector<unsigned char> text(data.size() / 3 * 4 + 5);
    const int length =
        EVP_EncodeBlock(text.data(), reinterpret_cast<const unsigned char*>(data.data()),
                        static_cast<int>(data.size()));
    return {reinterpret_cast<char*>(text.data()), static_cast<std::size_t>(length)};
}

// Padding is decoded by OpenSSL as zero bytes.
std::string PeerDecode(std::string_view text) {
    std::vector<unsigned char> data(text.size() / 4 * 3 + 1);
    const int length =
        EVP_DecodeBlock(data.data(), reinterpret_cast<const unsigned char*>(text.data()),
                        static_cast<int>(text.size()));
    if (length < 0) return {};
    const auto padding =
        std::count(text.end() - std::min<std::size_t>(2, text.size()), text.end(), '=');
    return {reinterpret_cast<char*>(data.data()), static_cast<std::size_t>(length - padding)};
}

bool IsWholeGroups(std::string_view text) {
    if (text.size() % 4 != 0) return false;
    while (text.ends_with('=')) text.remove_suffix(1);
    return std::all_of(text.begin(), text.end(), [](unsigned char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '+' || c == '/';
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string text = Base64EncodeBytes(data, static_cast<unsigned int>(size));
    REQUIRE(text == (size == 0 ? "" : PeerEncode(input)));
    REQUIRE(Base64Decode(text) == input);
    const std::string decoded = Base64Decode(input);
    REQUIRE(decoded.size() <= size / 4 * 3 + 3);
    const bool padded = input.ends_with("===");
    if (size != 0 && !padded && IsWholeGroups(input)) REQUIRE(decoded == PeerDecode(input));
    return 0;
}
