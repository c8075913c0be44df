#include "pdf/RangeBinding.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

#include "pdf/SignedRange.h"

namespace {

constexpr std::size_t kLongestArray = 256;
constexpr std::size_t kMostArrays = 10'000;
constexpr std::size_t kBlock = 1024;

// Takes longer to be looked through than a thread to be made.
constexpr std::size_t kPiece = 1024 * 1024;

bool IsBlank(char c) {
    return std::string_view("\0\t\n\v\f\r ", 7).find(c) != std::string_view::npos;
}

bool EndsName(char c) {
    return IsBlank(c) || std::string_view("()<>[]{}/%").find(c) != std::string_view::npos;
}

// Goes on to the next word of a text, as ISO 32000-2, 7.2 has it.
class CWords {
public:
    explicit CWords(std::string_view text) : m_text(text) {}
    std::size_t At() const { return m_at; }

    bool TakeName(std::string_view wanted) {
        if (!Take('/')) return false;
        for (const char letter : wanted) {
            if (TakeLetter() != letter) return false;
        }
        return m_at < m_text.size() && EndsName(m_text[m_at]);
    }

    bool Take(char c) {
        if (m_at >= m_text.size() || m_text[m_at] != c) return false;
        ++m_at;
        return true;
    }

    bool TakeNumber(std::uint64_t& number) {
        const char* const end = m_text.data() + m_text.size();
        const auto result = std::from_chars(m_text.data() + m_at, end, number);
        if (result.ec != std::errc() || result.ptr == end) return false;
        m_at = static_cast<std::size_t>(result.ptr - m_text.data());
        return EndsName(m_text[m_at]);
    }

    void SkipBlanks() {
        bool comment = false;
        for (; m_at < m_text.size(); ++m_at) {
            const char c = m_text[m_at];
            comment = comment ? c != '\r' && c != '\n' : c == '%';
            if (!comment && !IsBlank(c)) return;
        }
    }

private:
    char TakeLetter() {
        if (m_at >= m_text.size()) return '\0';
        if (m_text[m_at] != '#' || m_at + 3 > m_text.size()) return m_text[m_at++];
        unsigned char letter = 0;
        const char* const digits = m_text.data() + m_at + 1;
        const auto result = std::from_chars(digits, digits + 2, letter, 16);
        m_at += 3;
        return result.ec == std::errc() && result.ptr == digits + 2 ? static_cast<char>(letter)
                                                                    : '\0';
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

// The array at the start of `text`, with places that count from there.
std::optional<RangeArray> ReadArray(std::string_view text) {
    CWords words(text.substr(0, kLongestArray));
    RangeArray array;
    if (!words.TakeName("ByteRange")) return {};
    words.SkipBlanks();
    if (!words.Take('[')) return {};
    for (auto& number : array.numbers) {
        words.SkipBlanks();
        if (!words.TakeNumber(number)) return {};
    }
    words.SkipBlanks();
    if (!words.Take(']')) return {};
    array.end = words.At();
    return array;
}

// Whether an array may begin in the first kBlock bytes: a name with that letter, or with an escape.
// Bytes, a fixed number of them and no way out before the end are what the compiler makes vectors
// of: most of a file is passed over here.
bool MayBeginIn(std::string_view text) {
    if (text.size() <= kBlock) return true;
    unsigned char found = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
        const unsigned char slash = text[i] == '/';
        const unsigned char letter = text[i + 1] == 'B';
        const unsigned char escape = text[i + 1] == '#';
        found = static_cast<unsigned char>(found | (slash & (letter | escape)));
    }
    return found != 0;
}

// Calls `found` for each array that begins in the first `starts` bytes of `text`.
template <typename Found>
void FindArrays(std::string_view text, std::size_t starts, Found found) {
    for (std::size_t block = 0; block < starts; block += kBlock) {
        if (!MayBeginIn(text.substr(block))) continue;
        const std::size_t end = std::min(starts, block + kBlock);
        for (auto at = text.find('/', block); at < end; at = text.find('/', at + 1)) {
            const auto array = ReadArray(text.substr(at));
            if (array) found(RangeArray{at, at + array->end, array->numbers});
        }
    }
}

std::uint64_t SignedSize(const PdfSignature& signature) {
    return signature.gapStart + signature.end - signature.gapEnd;
}

// Those arrays that begin in the first `starts` bytes and tell of as many bytes as a signature
// signs; no more of them than make too many.
std::vector<RangeArray> FindSigned(std::string_view text, std::size_t starts,
                                   const std::set<std::uint64_t>& sizes) {
    std::vector<RangeArray> arrays;
    FindArrays(text, starts, [&](const RangeArray& array) {
        if (arrays.size() <= kMostArrays && sizes.contains(array.numbers[1] + array.numbers[3])) {
            arrays.push_back(array);
        }
    });
    return arrays;
}

// Tells what stands in the bytes that one signature signs. All of it follows from these bytes: a
// file with the same ones gets the same answer, wherever its gap is.
class CSignedArrays {
public:
    explicit CSignedArrays(const PdfSignature& signature)
        : m_size(SignedSize(signature)),
          m_own{0, signature.gapStart, signature.gapEnd, signature.end - signature.gapEnd} {}

    void Add(const RangeArray& array) {
        if (array.numbers[1] + array.numbers[3] != m_size) return;
        (array.numbers == m_own ? m_foundOwn : m_foundOther) = true;
    }

    RangeProblem Problem() const {
        if (m_foundOther) return RangeProblem::kTwoGaps;
        return m_foundOwn ? RangeProblem::kNone : RangeProblem::kNotInSignedBytes;
    }

private:
    std::uint64_t m_size;
    std::array<std::uint64_t, 4> m_own;
    bool m_foundOwn = false;
    bool m_foundOther = false;
};

// The arrays that come about where the bytes in front of the gap meet those behind it.
void AddAcrossGap(std::string_view file, const PdfSignature& signature, CSignedArrays& arrays) {
    const auto front = std::min<std::uint64_t>(signature.gapStart, kLongestArray);
    const auto behind = std::min<std::uint64_t>(signature.end - signature.gapEnd, kLongestArray);
    std::string text(file.substr(signature.gapStart - front, front));
    text += file.substr(signature.gapEnd, behind);
    FindArrays(text, static_cast<std::size_t>(front), [&](const RangeArray& array) {
        if (array.end > front) arrays.Add(array);
    });
}

void CheckOne(std::string_view file, const std::vector<RangeArray>& all, PdfSignature& signature) {
    CSignedArrays arrays(signature);
    for (const RangeArray& array : all) {
        const bool inFront = array.end <= signature.gapStart;
        const bool behind = array.begin >= signature.gapEnd && array.end <= signature.end;
        if (inFront || behind) arrays.Add(array);
    }
    AddAcrossGap(file, signature, arrays);
    if (arrays.Problem() != RangeProblem::kNone) RefuseRange(signature, arrays.Problem());
}

std::set<std::uint64_t> SignedSizes(const std::vector<PdfSignature>& signatures) {
    std::set<std::uint64_t> sizes;
    for (const PdfSignature& signature : signatures) {
        if (signature.problem == RangeProblem::kNone) sizes.insert(SignedSize(signature));
    }
    return sizes;
}

}  // namespace

CRangeBinding::CRangeBinding(std::string_view file, const std::vector<PdfSignature>& signatures)
    : m_file(file),
      m_sizes(SignedSizes(signatures)),
      m_arrays(m_sizes.empty() ? 0 : file.size() / kPiece + 1),
      m_search(m_arrays.size(), [this](std::size_t number) { SearchPiece(number); }) {}

void CRangeBinding::Begin() {
    if (m_arrays.size() > 1) m_search.Begin();
}

void CRangeBinding::SearchPiece(std::size_t number) {
    const std::size_t begin = number * kPiece;
    auto& arrays = m_arrays[number];
    arrays = FindSigned(m_file.substr(begin), std::min(kPiece, m_file.size() - begin), m_sizes);
    for (RangeArray& array : arrays) {
        array.begin += begin;
        array.end += begin;
    }
}

bool CRangeBinding::Check(std::vector<PdfSignature>& signatures) {
    m_search.Finish();
    std::vector<RangeArray> all;
    for (const auto& arrays : m_arrays) {
        all.insert(all.end(), arrays.begin(), arrays.end());
        if (all.size() > kMostArrays) return false;
    }
    for (PdfSignature& signature : signatures) {
        if (signature.problem == RangeProblem::kNone) CheckOne(m_file, all, signature);
    }
    return true;
}
