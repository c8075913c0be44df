#include "components/sealpicture/PictureFile.h"

#include <climits>

#include "components/sealpicture/PictureCodes.h"

namespace {

int CheckHeader(const PictureHeader& header) {
    if (header.format == PictureFormat::kUnknown) return kPictureUnknownFormat;
    if (header.width <= 0 || header.height <= 0) return kPictureDamaged;
    if (IsPictureTooLarge(header.width, header.height)) return kPictureTooLarge;
    return header.complete ? kPictureOk : kPictureDamaged;
}

}  // namespace

int ReadPictureFile(std::string_view file, PictureFile& picture) {
    if (file.size() > INT_MAX) return kPictureTooLarge;
    const PictureHeader header = ReadPictureHeader(file);
    if (const int code = CheckHeader(header)) return code;
    const CGdLibrary* const gd = CGdLibrary::Get();
    if (!gd) return kPictureNoDecoder;
    GdImageHandle image = DecodeFile(*gd, header.format, file);
    if (!image) return kPictureDamaged;
    picture.header = header;
    picture.image = std::move(image);
    return kPictureOk;
}
