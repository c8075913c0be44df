// XmlTags.h - how long an element's tags are, and what stands between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "foundation/XmlIndex.h"

namespace xml_tags {

constexpr unsigned int kStartTagBits = 22;
constexpr std::uint32_t kLongStartTag = (1U << kStartTagBits) - 1;
constexpr std::uint32_t kLongEndTag = (1U << (32 - kStartTagBits)) - 1;

std::uint32_t LongStartTagLength(std::string_view text, const XmlElement& element);
std::uint32_t LongEndTagOffset(std::string_view text, const XmlElement& element,
                               std::uint32_t from);

}  // namespace xml_tags

// The lengths as a record holds them.
inline std::uint32_t PackXmlTagLengths(std::uint32_t startTag, std::uint32_t endTag) {
    return (startTag < xml_tags::kLongStartTag ? startTag : xml_tags::kLongStartTag) |
           (endTag < xml_tags::kLongEndTag ? endTag : xml_tags::kLongEndTag)
               << xml_tags::kStartTagBits;
}

// The same for tags of a name alone, of no more than so many bytes.
constexpr std::uint32_t kPlainNameLength = 1000;
constexpr std::uint32_t PackXmlPlainTagLengths(std::uint32_t nameLength) {
    return (nameLength + 2) | (nameLength + 3) << xml_tags::kStartTagBits;
}

// The lengths of tags that their fields hold for sure.
inline std::uint32_t XmlShortStartTagLength(const XmlElement& element) {
    return element.tagLengths & xml_tags::kLongStartTag;
}
inline std::uint32_t XmlShortEndTagLength(const XmlElement& element) {
    return element.tagLengths >> xml_tags::kStartTagBits;
}

// In bytes of `text`, the document that `element` points into. A length that its field can't hold
// is found by reading the tag again.
inline std::uint32_t XmlStartTagLength(std::string_view text, const XmlElement& element) {
    const std::uint32_t length = XmlShortStartTagLength(element);
    return length < xml_tags::kLongStartTag ? length : xml_tags::LongStartTagLength(text, element);
}

// True for `<A/>`, and for a start tag without end tag.
inline bool IsXmlTagAlone(std::string_view text, const XmlElement& element) {
    return XmlStartTagLength(text, element) == element.length;
}

// The offset of the end tag of an element that has one. One of a thousand bytes and more is found
// by reading the content again, from `from` on: a place in it at which a token begins.
inline std::uint32_t XmlContentEnd(std::string_view text, const XmlElement& element,
                                   std::uint32_t from) {
    const std::uint32_t length = XmlShortEndTagLength(element);
    return length < xml_tags::kLongEndTag ? element.start + element.length - length
                                          : xml_tags::LongEndTagOffset(text, element, from);
}
