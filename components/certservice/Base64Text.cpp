#include "components/certservice/Base64Text.h"

#include <array>

#include "foundation/Text.h"

namespace {

enum Kind : unsigned char { kForeign, kDigit, kPadding, kSpace };

constexpr std::array<Kind, 256> MakeKinds() {
    std::array<Kind, 256> kinds{};
    for (unsigned char c = 'A'; c <= 'Z'; ++c) kinds[c] = kDigit;
    for (unsigned char c = 'a'; c <= 'z'; ++c) kinds[c] = kDigit;
    for (unsigned char c = '0'; c <= '9'; ++c) kinds[c] = kDigit;
    kinds['+'] = kinds['/'] = kDigit;
    kinds['='] = kPadding;
    kinds[' '] = kinds['\t'] = kinds['\r'] = kinds['\n'] = kSpace;
    return kinds;
}

constexpr std::array<Kind, 256> kKinds = MakeKinds();

}  // namespace

bool DecodeBase64Text(std::string_view text, std::string& data) {
    std::string plain(text.size(), '\0');
    size_t size = 0;
    size_t padding = 0;
    for (const unsigned char character : text) {
        const Kind kind = kKinds[character];
        if (kind == kForeign || (kind == kDigit && padding > 0)) return false;
        if (kind == kSpace) continue;
        if (kind == kPadding) ++padding;
        plain[size++] = static_cast<char>(character);
    }
    if (size % 4 != 0 || padding > 2) return false;
    plain.resize(size);
    data = Base64Decode(plain);
    return true;
}
