#include "foundation/XmlTags.h"

#include "foundation/XmlTokens.h"

namespace xml_tags {

std::uint32_t LongStartTagLength(std::string_view text, const XmlElement& element) {
    const char* const start = text.data() + element.start;
    const char* const end = XmlTagEnds(start + element.length).Find(start + 1);
    return end != nullptr ? static_cast<std::uint32_t>(end + 1 - start) : element.length;
}

std::uint32_t LongEndTagOffset(std::string_view text, const XmlElement& element,
                               std::uint32_t from) {
    const std::uint32_t end = element.start + element.length;
    XmlTokenizer tokens(text.substr(0, end));
    std::uint32_t last = from;
    for (std::uint32_t place = from; place < end;) {
        last = place;
        place += static_cast<std::uint32_t>(tokens.TokenAt(text.data() + place).text.size());
    }
    return last;
}

}  // namespace xml_tags
