// XmlTags.h - how long an element's tags are, and what stands between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "foundation/XmlIndex.h"

// The lengths as a record holds them.
std::uint32_t PackXmlTagLengths(std::size_t startTag, std::size_t endTag);

// In bytes of `text`, the document that `element` points into. A length that its field can't hold
// is found by reading the tag again.
std::uint32_t XmlStartTagLength(std::string_view text, const XmlElement& element);

// True for `<A/>`, and for a start tag without end tag.
bool IsXmlTagAlone(std::string_view text, const XmlElement& element);

// The offset of the end tag of an element that has one. One of a thousand bytes and more is found
// by reading the content again, from `from` on: a place in it at which a token begins.
std::uint32_t XmlContentEnd(std::string_view text, const XmlElement& element, std::uint32_t from);
