// BerElements.h - BER (ITU-T X.690) element by element, for a change to one part of a message that
// leaves all others as they came in: no object is decoded, and so none is encoded another way.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Views of the bytes that were read.
struct BerElement {
    unsigned char tag = 0;  // the first byte: class, form and the number of a tag below 31
    // The tag's number if its class is the universal one, also where a number below 31 is written
    // the long way (X.690, section 8.1.2.4), which decoders take; -1 in any other class.
    int universal = -1;
    std::string_view whole;
    std::string_view content;  // without header and, at an indefinite length, end mark
};

constexpr unsigned char kBerInteger = 0x02;
constexpr unsigned char kBerObjectId = 0x06;
constexpr unsigned char kBerSequence = 0x30;
constexpr unsigned char kBerSet = 0x31;
constexpr unsigned char kBerContext0 = 0xA0;
constexpr unsigned char kBerContext1 = 0xA1;

// The element that `bytes` begin with; none if they don't begin with a whole one.
std::optional<BerElement> FirstBerElement(std::string_view bytes);

// The elements that fill `content`; none if something is left over.
std::optional<std::vector<BerElement>> SplitBer(std::string_view content);

// An element of definite length.
std::string DerElement(unsigned char tag, std::string_view content);
