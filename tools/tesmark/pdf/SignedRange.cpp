#include "pdf/SignedRange.h"

#include <algorithm>
#include <string_view>

namespace {

// Far above every signature with its seal, chain and time stamp.
constexpr std::uint64_t kLargestGap = 64 * 1024 * 1024;

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// The bytes of "<...>" without blanks in it and with all digits in pairs, as a gap has to be whose
// every byte is accounted for.
bool DecodeGap(std::string_view gap, std::string& bytes) {
    if (gap.size() < 2 || gap.size() % 2 || gap.front() != '<' || gap.back() != '>') return false;
    gap = gap.substr(1, gap.size() - 2);
    bytes.clear();
    bytes.reserve(gap.size() / 2);
    for (std::size_t i = 0; i < gap.size(); i += 2) {
        const int high = HexDigit(gap[i]);
        const int low = HexDigit(gap[i + 1]);
        if (high < 0 || low < 0) return false;
        bytes += static_cast<char>(high * 16 + low);
    }
    return true;
}

// No signature goes deeper; a hostile one could without end.
constexpr int kDeepestElement = 64;

// A tag and a length, at most four bytes of it; the tags of signatures have one byte.
struct Header {
    std::size_t size = 0;  // 0: there is none
    std::size_t length = 0;
    bool indefinite = false;
};

Header ReadHeader(std::string_view bytes) {
    if (bytes.size() < 2 || (bytes[0] & 0x1F) == 0x1F) return {};
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    if (at(1) < 0x80) return {2, at(1), false};
    if (at(1) == 0x80) return {2, 0, true};
    const std::size_t count = at(1) - 0x80u;
    if (count > 4 || bytes.size() < 2 + count) return {};
    std::size_t length = 0;
    for (std::size_t i = 0; i < count; ++i) length = length << 8 | at(2 + i);
    return {2 + count, length, false};
}

// The length of the element at the start, its header and in BER its end-of-contents included; 0 if
// it isn't whole.
std::size_t ElementLength(std::string_view bytes, int depth = 0) {
    const Header header = ReadHeader(bytes);
    if (header.size == 0 || depth > kDeepestElement) return 0;
    if (!header.indefinite) {
        return header.length <= bytes.size() - header.size ? header.size + header.length : 0;
    }
    std::size_t at = header.size;
    while (bytes.substr(at, 2) != std::string_view("\0\0", 2)) {
        const std::size_t length = ElementLength(bytes.substr(at), depth + 1);
        if (length == 0) return 0;
        at += length;
    }
    return at + 2;
}

RangeProblem CutZeros(std::string& contents) {
    const auto last = contents.find_last_not_of('\0');
    if (last == std::string::npos) return RangeProblem::kEmptyContents;
    const std::size_t length = ElementLength(contents);
    // Zeros may be the end of a signature too.
    contents.resize(std::max(last + 1, length));
    return length && length < contents.size() ? RangeProblem::kBehindSignature
                                              : RangeProblem::kNone;
}

RangeProblem ReadNumbers(QPDFObjectHandle array, std::uint64_t (&numbers)[4]) {
    if (!array.isArray()) return RangeProblem::kMissing;
    if (array.isIndirect()) return RangeProblem::kMalformed;
    if (array.getArrayNItems() != 4) return RangeProblem::kMalformed;
    for (int i = 0; i < 4; ++i) {
        auto item = array.getArrayItem(i);
        if (item.isIndirect() || !item.isInteger() || item.getIntValue() < 0) {
            return RangeProblem::kMalformed;
        }
        numbers[i] = static_cast<std::uint64_t>(item.getIntValue());
    }
    return RangeProblem::kNone;
}

RangeProblem CheckNumbers(const std::uint64_t (&numbers)[4], std::uint64_t fileSize) {
    const auto [start, length, secondStart, secondLength] = numbers;
    if (start != 0) return RangeProblem::kNotFromStart;
    if (length > fileSize || secondStart > fileSize || secondLength > fileSize - secondStart) {
        return RangeProblem::kBeyondFile;
    }
    if (secondStart < length) return RangeProblem::kOverlapping;
    return secondStart - length > kLargestGap ? RangeProblem::kGapNotContents : RangeProblem::kNone;
}

std::string_view Gap(std::string_view file, const PdfSignature& signature) {
    return file.substr(signature.gapStart, signature.gapEnd - signature.gapStart);
}

RangeProblem Read(QPDFObjectHandle dictionary, std::string_view file, std::uint64_t headerOffset,
                  qpdf_offset_t objectOffset, PdfSignature& signature) {
    std::uint64_t numbers[4] = {};
    const auto problem = ReadNumbers(dictionary.getKey("/ByteRange"), numbers);
    if (problem != RangeProblem::kNone) return problem;
    auto contents = dictionary.getKey("/Contents");
    if (!contents.isString() || contents.isIndirect()) return RangeProblem::kMissing;
    const auto wrong = CheckNumbers(numbers, file.size());
    if (wrong != RangeProblem::kNone) return wrong;
    signature.gapStart = numbers[1];
    signature.gapEnd = numbers[2];
    signature.end = numbers[2] + numbers[3];
    // The place and the value: the same digits elsewhere in the file are not this string.
    const qpdf_offset_t offset = contents.getParsedOffset();
    const bool same = objectOffset >= 0 && offset > objectOffset &&
                      static_cast<std::uint64_t>(offset) + headerOffset == signature.gapStart &&
                      DecodeGap(Gap(file, signature), signature.contents) &&
                      signature.contents == contents.getStringValue();
    return same ? CutZeros(signature.contents) : RangeProblem::kGapNotContents;
}

}  // namespace

void ReadSignedRange(QPDFObjectHandle dictionary, std::string_view file, std::uint64_t headerOffset,
                     qpdf_offset_t objectOffset, PdfSignature& signature) {
    const auto problem = Read(dictionary, file, headerOffset, objectOffset, signature);
    if (problem != RangeProblem::kNone) RefuseRange(signature, problem);
}

void RefuseRange(PdfSignature& signature, RangeProblem problem) {
    signature.problem = problem;
    signature.gapStart = signature.gapEnd = signature.end = 0;
    signature.contents.clear();
}

std::string RangeProblemText(RangeProblem problem) {
    switch (problem) {
        case RangeProblem::kNone: return "";
        case RangeProblem::kMissing: return "The signature doesn't tell what it covers.";
        case RangeProblem::kMalformed: return "The signature's byte range can't be understood.";
        case RangeProblem::kNotFromStart:
            return "The signature leaves out bytes at the start of the file.";
        case RangeProblem::kOverlapping: return "The signature's byte ranges overlap.";
        case RangeProblem::kBeyondFile: return "The signature covers bytes that the file lacks.";
        case RangeProblem::kGapNotContents:
            return "The signature leaves out other bytes than its own value.";
        case RangeProblem::kEmptyContents: return "The signature has no value.";
        case RangeProblem::kBehindSignature:
            return "Unsigned bytes stand behind the signature's value.";
        case RangeProblem::kShared: return "Several signature fields share the signature's value.";
        case RangeProblem::kTwoGaps:
            return "The signed bytes tell of a second place where the signature's value would fit.";
        case RangeProblem::kNotInSignedBytes:
            return "The signature's byte range is not among the bytes that it covers.";
    }
    return "";
}
