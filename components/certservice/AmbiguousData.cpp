#include "components/certservice/AmbiguousData.h"

#include <array>
#include <optional>

#include "components/certservice/BerElements.h"

namespace {

constexpr unsigned char kNumberOfTag = 0x1F;
constexpr unsigned char kBitString = 0x03;
constexpr unsigned char kIa5String = 0x16;
constexpr std::string_view kMessageDigest("\x2A\x86\x48\x86\xF7\x0D\x01\x09\x04", 9);

// One element after the other: of hostile data there may be any number.
class CElements {
public:
    explicit CElements(std::string_view content) : m_rest(content) {}

    std::optional<BerElement> Next() {
        const std::optional<BerElement> next = FirstBerElement(m_rest);
        if (next) m_rest.remove_prefix(next->whole.size());
        return next;
    }
    bool AtEnd() const { return m_rest.empty(); }

private:
    std::string_view m_rest;
};

bool IsAttributeOf(const BerElement& attribute, std::string_view type) {
    if (attribute.tag != kBerSequence) return false;
    const auto name = CElements(attribute.content).Next();
    return name && name->tag == kBerObjectId && name->content == type;
}

bool AreSignedAttributes(std::string_view content) {
    CElements attributes(content);
    bool found = false;
    while (const auto attribute = attributes.Next()) {
        found = found || IsAttributeOf(*attribute, kMessageDigest);
    }
    return found && attributes.AtEnd();
}

bool IsSealToSign(std::string_view content) {
    CElements elements(content);
    const std::array parts = {elements.Next(), elements.Next(), elements.Next(), elements.Next(),
                              elements.Next()};
    return parts[4] && parts[0]->tag == kBerInteger && parts[1]->tag == kBerSequence &&
           (parts[3]->tag & kNumberOfTag) == kBitString;
}

bool IsSealHeader(const BerElement& element) {
    if (element.tag != kBerSequence) return false;
    const auto name = CElements(element.content).Next();
    return name && name->tag == kIa5String && name->content == "ES";
}

// Of 2014 what is signed begins with what is signed today.
bool IsSealInfo(std::string_view content) {
    const auto first = CElements(content).Next();
    if (!first) return false;
    if (IsSealHeader(*first)) return true;
    const auto inner = CElements(first->content).Next();
    return first->tag == kBerSequence && inner && IsSealHeader(*inner);
}

}  // namespace

bool IsAmbiguous(std::string_view data) {
    if (data.empty() || (data[0] != kBerSet && data[0] != kBerSequence)) return false;
    // What is signed elsewhere has a definite length.
    if (data.size() < 2 || data[1] == '\x80') return false;
    const auto outer = FirstBerElement(data);
    if (!outer || outer->whole.size() != data.size()) return false;
    if (outer->tag == kBerSet) return AreSignedAttributes(outer->content);
    return IsSealToSign(outer->content) || IsSealInfo(outer->content);
}
