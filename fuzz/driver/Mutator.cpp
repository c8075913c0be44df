#include "fuzz/driver/Mutator.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

// Lengths, tags and separators at which parsers go wrong.
constexpr unsigned char kEdges[] = {0x00, 0x01, 0x04, 0x05, 0x0A, 0x0D, 0x20, 0x22, 0x26, 0x2C,
                                    0x30, 0x3B, 0x3D, 0x5B, 0x5C, 0x5D, 0x7C, 0x7F, 0x80, 0x81,
                                    0x82, 0x83, 0x84, 0x88, 0xA0, 0xC2, 0xE0, 0xF0, 0xFE, 0xFF};

}  // namespace

CMutator::CMutator(std::vector<std::string> seeds, std::uint64_t seed)
    : m_seeds(std::move(seeds)), m_state(seed) {
    if (m_seeds.empty()) m_seeds.emplace_back();
}

// splitmix64: short, and the same everywhere.
std::uint64_t CMutator::Random() {
    std::uint64_t value = m_state += 0x9E37'79B9'7F4A'7C15;
    value = (value ^ value >> 30) * 0xBF58'476D'1CE4'E5B9;
    value = (value ^ value >> 27) * 0x94D0'49BB'1331'11EB;
    return value ^ value >> 31;
}

std::size_t CMutator::Below(std::size_t limit) { return Random() % limit; }

std::string CMutator::Next() {
    std::string input = m_seeds[Below(m_seeds.size())];
    // Mostly a few changes, so that what follows the first of them is still looked at.
    const std::size_t changes = 1 + Below(Below(8) == 0 ? 16 : 3);
    for (std::size_t i = 0; i < changes; ++i) Change(input);
    if (input.size() > kMaxLength) input.resize(kMaxLength);
    return input;
}

std::string CMutator::Piece(const std::string& text) {
    if (text.empty()) return {};
    const std::size_t begin = Below(text.size());
    const std::size_t longest =
        Below(4) == 0 ? text.size() : std::min<std::size_t>(16, text.size());
    return text.substr(begin, 1 + Below(longest));
}

void CMutator::Overwrite(std::string& input) {
    const std::size_t place = Below(input.size());
    const auto byte = static_cast<unsigned char>(input[place]);
    unsigned int changed = kEdges[Below(std::size(kEdges))];
    switch (Below(4)) {
        case 0: changed = byte ^ 1U << Below(8); break;
        case 1: changed = byte + 1U; break;
        case 2: changed = byte - 1U; break;
        default: break;
    }
    input[place] = static_cast<char>(changed);
}

void CMutator::Change(std::string& input) {
    const std::size_t place = Below(input.size() + 1);
    switch (Below(8)) {
        case 0: input.resize(place); break;
        case 1: input.insert(place, Piece(input)); break;
        case 2: input.insert(place, Piece(m_seeds[Below(m_seeds.size())])); break;
        case 3: input.insert(place, 1, static_cast<char>(kEdges[Below(std::size(kEdges))])); break;
        case 4: input.insert(place, 1 + Below(4), static_cast<char>(Random())); break;
        case 5: input.erase(place, Piece(input).size()); break;
        default:
            if (!input.empty()) Overwrite(input);
            break;
    }
}
