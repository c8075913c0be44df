#include "components/seallibrary/EsSeal.h"

#include <climits>
#include <cstddef>

namespace {

constexpr std::size_t kLengthAt = 12;
constexpr std::size_t kNameAt = 86;
constexpr std::size_t kPictureAt = 328;
static_assert(kNameAt + kEsNameCapacity + 1 == kPictureAt);

}  // namespace

std::string MakeEsSeal(std::string_view nameGbk, std::string_view picture) {
    if (nameGbk.size() > kEsNameCapacity || nameGbk.find('\0') != nameGbk.npos) return {};
    if (picture.size() > INT_MAX) return {};
    std::string seal(kPictureAt, '\0');
    seal[0] = 0x45;
    seal[1] = 0x53;
    for (std::size_t byte = 0; byte < 4; ++byte)
        seal[kLengthAt + byte] = static_cast<char>(picture.size() >> (8 * byte));
    seal.replace(kNameAt, nameGbk.size(), nameGbk);
    return seal.append(picture);
}
