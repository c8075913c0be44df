#include "components/certservice/StampMessage.h"

#include "components/certservice/BerElements.h"

namespace {

using Elements = std::vector<BerElement>;

// 1.2.840.113549.1.9.16.2.14, the contents.
constexpr std::string_view kTimeStampToken("\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10\x02\x0E", 11);

std::string Join(const Elements& elements) {
    std::string bytes;
    for (const BerElement& element : elements) bytes += element.whole;
    return bytes;
}

bool IsTimeStamp(const BerElement& attribute) {
    const auto kind = FirstBerElement(attribute.content);
    return kind && kind->tag == kBerObjectId && kind->content == kTimeStampToken;
}

// The attributes that are no time stamp.
std::optional<std::string> OtherAttributes(std::string_view content) {
    std::string others;
    const auto attributes = SplitBer(content);
    if (!attributes) return std::nullopt;
    for (const BerElement& attribute : *attributes) {
        if (!IsTimeStamp(attribute)) others += attribute.whole;
    }
    return others;
}

std::string StampSigner(const BerElement& signer, std::string_view token) {
    auto parts = SplitBer(signer.content);
    if (!parts || parts->empty()) return {};
    std::string attributes;
    if (parts->back().tag == kBerContext1) {
        const auto others = OtherAttributes(parts->back().content);
        if (!others) return {};
        attributes = *others;
        parts->pop_back();
    }
    attributes += DerElement(
        kBerSequence, DerElement(kBerObjectId, kTimeStampToken) + DerElement(kBerSet, token));
    return DerElement(kBerSequence, Join(*parts) + DerElement(kBerContext1, attributes));
}

std::string StampSigners(const BerElement& set, std::string_view token) {
    auto signers = SplitBer(set.content);
    if (set.tag != kBerSet || !signers || signers->empty()) return {};
    const std::string first = StampSigner(signers->front(), token);
    if (first.empty()) return {};
    signers->erase(signers->begin());
    return DerElement(kBerSet, first + Join(*signers));
}

std::string StampSignedData(const BerElement& data, std::string_view token) {
    auto parts = SplitBer(data.content);
    if (!parts || parts->empty()) return {};
    const std::string signers = StampSigners(parts->back(), token);
    if (signers.empty()) return {};
    parts->pop_back();
    return DerElement(kBerSequence, Join(*parts) + signers);
}

}  // namespace

std::string StampMessage(std::string_view message, std::string_view token) {
    const auto outer = FirstBerElement(message);
    const auto parts = outer ? SplitBer(outer->content) : std::nullopt;
    if (!parts || parts->size() != 2 || (*parts)[1].tag != kBerContext0) return {};
    const auto data = FirstBerElement((*parts)[1].content);
    const std::string stamped = data ? StampSignedData(*data, token) : std::string();
    if (stamped.empty()) return {};
    return DerElement(kBerSequence,
                      std::string(parts->front().whole) + DerElement(kBerContext0, stamped));
}
