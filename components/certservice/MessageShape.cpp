#include "components/certservice/MessageShape.h"

#include "components/certservice/BerElements.h"

namespace {

constexpr unsigned char kConstructed = 0x20;
constexpr unsigned char kContextClass = 0x80;
constexpr unsigned char kClassMask = 0xC0;
constexpr unsigned char kOctets = 0x04;
constexpr unsigned char kConstructedOctets = 0x24;
constexpr std::size_t kSignersId = 1;
// Certificates with names and extensions go ten levels down.
constexpr int kDeepest = 32;

bool IsConstructed(const BerElement& element) { return element.tag & kConstructed; }

bool IsContext(const BerElement& element) { return (element.tag & kClassMask) == kContextClass; }

// The pieces of a streamed message (X.690, section 8.7.3).
bool HasOctetsOnly(std::string_view content) {
    const auto pieces = SplitBer(content);
    if (!pieces) return false;
    for (const BerElement& piece : *pieces) {
        if (piece.tag != kOctets && piece.tag != kConstructedOctets) return false;
    }
    return true;
}

bool HasConstructedSets(std::string_view content, int depth) {
    const auto elements = SplitBer(content);
    if (!elements || depth > kDeepest) return false;
    for (const BerElement& element : *elements) {
        const auto constructed = static_cast<unsigned char>(element.tag | kConstructed);
        if (element.tag == kConstructedOctets && !HasOctetsOnly(element.content)) return false;
        if (IsConstructed(element)) {
            if (!HasConstructedSets(element.content, depth + 1)) return false;
        } else if (constructed == kBerSequence || constructed == kBerSet) {
            return false;
        }
    }
    return true;
}

// The certificates and lists of a message, the attributes of a signer. A signer's id may be the
// octets of a key's.
bool HasConstructedParts(std::string_view content, std::size_t exempt) {
    const auto parts = SplitBer(content);
    if (!parts) return false;
    for (std::size_t i = 0; i < parts->size(); ++i) {
        if (i != exempt && IsContext((*parts)[i]) && !IsConstructed((*parts)[i])) return false;
    }
    return true;
}

bool HaveConstructedParts(const BerElement& signers) {
    const auto each = SplitBer(signers.content);
    if (!each) return false;
    for (const BerElement& signer : *each) {
        if (!HasConstructedParts(signer.content, kSignersId)) return false;
    }
    return true;
}

}  // namespace

bool HasMessageShape(std::string_view message) {
    const auto outer = FirstBerElement(message);
    if (!outer || outer->tag != kBerSequence || !HasConstructedSets(outer->content, 0))
        return false;
    const auto parts = SplitBer(outer->content);
    if (!parts || parts->size() != 2 || parts->back().tag != kBerContext0) return false;
    const auto data = FirstBerElement(parts->back().content);
    if (!data || !HasConstructedParts(data->content, 0)) return false;
    const auto elements = SplitBer(data->content);
    return elements && !elements->empty() && HaveConstructedParts(elements->back());
}
