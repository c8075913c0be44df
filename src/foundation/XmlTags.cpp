#include "foundation/XmlTags.h"

#include <algorithm>

#include "foundation/XmlTokens.h"

namespace {

constexpr unsigned int kStartTagBits = 22;
constexpr std::uint32_t kLongStartTag = (1U << kStartTagBits) - 1;
constexpr std::uint32_t kLongEndTag = (1U << (32 - kStartTagBits)) - 1;

}  // namespace

std::uint32_t PackXmlTagLengths(std::size_t startTag, std::size_t endTag) {
    const auto start = static_cast<std::uint32_t>(std::min<std::size_t>(startTag, kLongStartTag));
    const auto end = static_cast<std::uint32_t>(std::min<std::size_t>(endTag, kLongEndTag));
    return start | end << kStartTagBits;
}

std::uint32_t XmlStartTagLength(std::string_view text, const XmlElement& element) {
    const std::uint32_t length = element.tagLengths & kLongStartTag;
    if (length < kLongStartTag) return length;
    const char* const start = text.data() + element.start;
    const char* const end = XmlTagEnds(start + element.length).Find(start + 1);
    return end != nullptr ? static_cast<std::uint32_t>(end + 1 - start) : element.length;
}

bool IsXmlTagAlone(std::string_view text, const XmlElement& element) {
    return XmlStartTagLength(text, element) == element.length;
}

std::uint32_t XmlContentEnd(std::string_view text, const XmlElement& element, std::uint32_t from) {
    const std::uint32_t end = element.start + element.length;
    const std::uint32_t length = element.tagLengths >> kStartTagBits;
    if (length < kLongEndTag) return end - length;
    XmlTokenizer tokens(text.substr(0, end));
    std::uint32_t last = from;
    for (std::uint32_t place = from; place < end;) {
        last = place;
        place += static_cast<std::uint32_t>(tokens.TokenAt(text.data() + place).text.size());
    }
    return last;
}
