// Mutator.h - variations of an input, the same ones for the same seed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class CMutator {
public:
    // `seeds` may be empty.
    CMutator(std::vector<std::string> seeds, std::uint64_t seed);

    // One of the seeds, or nothing, changed in a few places: bits and bytes, pieces removed,
    // doubled, moved, numbers at their edges, pieces of other seeds. At most kMaxLength bytes.
    std::string Next();

    static constexpr std::size_t kMaxLength = 65536;

private:
    std::uint64_t Random();
    // Less than `limit`, which is not 0.
    std::size_t Below(std::size_t limit);
    void Change(std::string& input);
    void Overwrite(std::string& input);
    std::string Piece(const std::string& text);

    std::vector<std::string> m_seeds;
    std::uint64_t m_state;
};
