#include "components/seallibrary/SealPictureCheck.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "components/picture/PictureHeader.h"

namespace {

// Makers write these in capitals or not.
bool IsRasterType(std::string type) {
    std::transform(type.begin(), type.end(), type.begin(), [](char character) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    });
    constexpr const char* kTypes[] = {"gif", "png", "jpg", "jpeg", "bmp"};
    return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

}  // namespace

bool HasUsablePicture(const Seal& seal) {
    if (seal.picture.empty() || seal.widthMm < 1 || seal.heightMm < 1) return false;
    const PictureHeader header = ReadPictureHeader(seal.picture);
    if (header.format == PictureFormat::kUnknown) return !IsRasterType(seal.pictureType);
    return header.width > 0 && header.height > 0 && header.complete;
}
