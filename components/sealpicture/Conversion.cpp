#include "components/sealpicture/Conversion.h"

#include "components/sealpicture/GifPicture.h"
#include "components/sealpicture/Picture.h"
#include "components/sealpicture/PictureCodes.h"

int ConvertToGif(std::string_view picture, std::string& gif) {
    gif.clear();
    Picture read;
    if (const int code = ReadPicture(picture, read)) return code;
    if (read.header.format == PictureFormat::kGif) {
        gif = picture;
        return kPictureOk;
    }
    const CGdLibrary& gd = *CGdLibrary::Get();
    gdImage* const image = read.image.get();
    return EncodeGif(gd, gdImageSX(image), PaintOnWhite(gd, image), gif);
}
