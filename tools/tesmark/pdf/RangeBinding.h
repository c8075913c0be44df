// RangeBinding.h - that a signature's value can't be moved to another place of the file.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "pdf/PdfSignature.h"
#include "pdf/SideWork.h"

// A /ByteRange array with the name in front of it, from "/" to "]".
struct RangeArray {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::array<std::uint64_t, 4> numbers{};
};

// A digest is over the bytes on both sides of the gap and so doesn't tell where between them the
// gap was: a file prepared with a second signature dictionary reads as another document, with the
// same signed bytes, once the value is put there. Each sound range has therefore to stand as
// "/ByteRange [0 b c d]" in the bytes that it signs, and no other one of as many bytes (b + d) may:
// of all files with these signed bytes at most one is then accepted. Blanks and comments may stand
// between the words, and the name may be written with "#"; from "/" to "]" it may take 256 bytes.
class CRangeBinding {
public:
    // `file` must outlive it, unchanged.
    CRangeBinding(std::string_view file, const std::vector<PdfSignature>& signatures);

    // Has another core look through a large file until Check is called.
    void Begin();
    // Ranges that aren't so become kNotInSignedBytes and kTwoGaps. The file is read once, whatever
    // the number of signatures, which are those of the start. False if so many such arrays stand in
    // it (10000) that somebody has filled it with them. At most once.
    bool Check(std::vector<PdfSignature>& signatures);

private:
    void SearchPiece(std::size_t number);

    std::string_view m_file;
    std::set<std::uint64_t> m_sizes;
    std::vector<std::vector<RangeArray>> m_arrays;  // of each piece of the file
    CSideWork m_search;
};
