#include "components/certservice/BerElements.h"

#include <openssl/asn1.h>

#include <climits>

#include "components/crypto/Handles.h"

namespace {

constexpr int kIndefinite = 0x01;
constexpr int kMalformed = 0x80;
constexpr std::size_t kEndMark = 2;

using AnyHandle = OpenSslHandle<ASN1_TYPE, ASN1_TYPE_free>;

}  // namespace

std::optional<BerElement> FirstBerElement(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > INT_MAX) return std::nullopt;
    const auto* start = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto size = static_cast<long>(bytes.size());
    const unsigned char* inside = start;
    long length = 0;
    int tag = 0;
    int kind = 0;
    const int form = ASN1_get_object(&inside, &length, &tag, &kind, size);
    if (form & kMalformed) return std::nullopt;
    const auto header = static_cast<std::size_t>(inside - start);
    const int universal = kind == V_ASN1_UNIVERSAL ? tag : -1;
    if (!(form & kIndefinite)) {
        const std::string_view whole = bytes.substr(0, header + static_cast<std::size_t>(length));
        return BerElement{*start, universal, whole, whole.substr(header)};
    }
    const unsigned char* end = start;
    if (!AnyHandle(d2i_ASN1_TYPE(nullptr, &end, size))) return std::nullopt;
    const std::string_view whole = bytes.substr(0, static_cast<std::size_t>(end - start));
    if (whole.size() < header + kEndMark) return std::nullopt;
    return BerElement{*start, universal, whole,
                      whole.substr(header, whole.size() - header - kEndMark)};
}

std::optional<std::vector<BerElement>> SplitBer(std::string_view content) {
    std::vector<BerElement> elements;
    while (!content.empty()) {
        const std::optional<BerElement> next = FirstBerElement(content);
        if (!next) return std::nullopt;
        elements.push_back(*next);
        content.remove_prefix(next->whole.size());
    }
    return elements;
}

std::string DerElement(unsigned char tag, std::string_view content) {
    std::string length;
    for (std::size_t left = content.size(); left > 0; left >>= 8) {
        length.insert(length.begin(), static_cast<char>(left & 0xFF));
    }
    std::string element(1, static_cast<char>(tag));
    if (content.size() < 0x80) {
        element += static_cast<char>(content.size());
    } else {
        element += static_cast<char>(0x80 | length.size());
        element += length;
    }
    return element.append(content);
}
