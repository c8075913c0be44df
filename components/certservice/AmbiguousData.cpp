#include "components/certservice/AmbiguousData.h"

#include <openssl/asn1.h>

#include <array>
#include <optional>

#include "components/certservice/BerElements.h"

namespace {

constexpr unsigned char kConstructed = 0x20;
constexpr unsigned char kLongTag = 0x1F;
constexpr std::string_view kSealMark = "ES";
// Decoders take no text in more levels of pieces.
constexpr int kDeepest = 8;
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
    return parts[4] && parts[0]->universal == V_ASN1_INTEGER &&
           parts[1]->universal == V_ASN1_SEQUENCE && parts[3]->universal == V_ASN1_BIT_STRING;
}

// True if `text` may be the beginning of `rest`, which it is taken off. Decoders join the pieces of
// a text whatever their types; of pieces that can't be told apart here it is taken for granted.
bool TakeText(const BerElement& text, int depth, std::string_view& rest) {
    if (depth > kDeepest) return false;
    if (!(text.tag & kConstructed)) {
        if (!rest.starts_with(text.content)) return false;
        rest.remove_prefix(text.content.size());
        return true;
    }
    CElements pieces(text.content);
    while (const auto piece = pieces.Next()) {
        if (!TakeText(*piece, depth + 1, rest)) return false;
    }
    if (!pieces.AtEnd()) rest = {};
    return true;
}

bool IsPlainType(int universal) {
    return universal >= 0 && universal != V_ASN1_SEQUENCE && universal != V_ASN1_SET;
}

bool IsSealHeader(const BerElement& element) {
    if (element.universal != V_ASN1_SEQUENCE) return false;
    const auto name = CElements(element.content).Next();
    if (!name || !IsPlainType(name->universal)) return false;
    std::string_view rest = kSealMark;
    return TakeText(*name, 0, rest) && rest.empty();
}

// Of 2014 what is signed begins with what is signed today.
bool IsSealInfo(std::string_view content) {
    const auto first = CElements(content).Next();
    if (!first) return false;
    if (IsSealHeader(*first)) return true;
    const auto inner = CElements(first->content).Next();
    return first->universal == V_ASN1_SEQUENCE && inner && IsSealHeader(*inner);
}

}  // namespace

bool IsAmbiguous(std::string_view data) {
    // What is signed elsewhere has a definite length.
    if (data.size() < 2) return false;
    if ((data[0] & kLongTag) != kLongTag && data[1] == '\x80') return false;
    const auto outer = FirstBerElement(data);
    if (!outer || outer->whole.size() != data.size()) return false;
    if (outer->universal == V_ASN1_SET) return AreSignedAttributes(outer->content);
    return outer->universal == V_ASN1_SEQUENCE &&
           (IsSealToSign(outer->content) || IsSealInfo(outer->content));
}
